// The one place that logs an error status, just before it is returned.
#ifndef TCS_SPACE_STATUS_LOG_H_
#define TCS_SPACE_STATUS_LOG_H_

#include <cstdint>

#include "platform/errlog.h"

namespace tcs {

// Logs "TCSpace(0x<code>)" and returns code.
inline uint32_t LogStatus(uint32_t code) {
  ErrOut("TCSpace(0x%lX)", static_cast<unsigned long>(code));
  return code;
}

}  // namespace tcs

#endif  // TCS_SPACE_STATUS_LOG_H_
