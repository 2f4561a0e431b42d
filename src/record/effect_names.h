// The standard names of transition codes: the dissolve (0), the wipe
// patterns numbered as SMPTE numbers them (1 to 246) and the inverted forms of
// codes 0 to 3 (500 to 503). A fixed table; safe from any thread.
#ifndef TCS_RECORD_EFFECT_NAMES_H_
#define TCS_RECORD_EFFECT_NAMES_H_

#include <cstdint>

namespace tcs {

// The name of `code`, or "" for a code without one (0xFFFFFFFF included).
// Never null; the text is static.
const char* EffectName(uint32_t code);

}  // namespace tcs

#endif  // TCS_RECORD_EFFECT_NAMES_H_
