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
  // A refusal is one line: the names it quotes from the file may hold line
  // breaks and other control characters, which become blanks.
  ReadError(Status status, const std::string& message)
      : std::runtime_error(OneLine(message)), status_(status) {}
  Status status() const { return status_; }

 private:
  static std::string OneLine(std::string text) {
    for (char& c : text) {
      if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F) c = ' ';
    }
    return text;
  }

  Status status_;
};

}  // namespace tcs::otio

#endif  // TCS_OTIO_READ_ERROR_H_
