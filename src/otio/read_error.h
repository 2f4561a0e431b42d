// ReadError: how the reader's inner steps refuse a file. Thrown, caught once
// at the reader's entry points and turned into a ReadResult; never leaves
// the library.
#ifndef TCS_OTIO_READ_ERROR_H_
#define TCS_OTIO_READ_ERROR_H_

#include <stdexcept>
#include <string>

#include "otio/otio.h"

namespace tcs::otio {

class ReadError : public std::runtime_error {
 public:
  ReadError(Status status, const std::string& message)
      : std::runtime_error(message), status_(status) {}
  Status status() const { return status_; }

 private:
  Status status_;
};

}  // namespace tcs::otio

#endif  // TCS_OTIO_READ_ERROR_H_
