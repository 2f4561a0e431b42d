// CTCRange: a span of record timecode with its transition effect (code,
// duration in frames, and a name or text of at most 4095 characters).
// A plain value: copies copy the whole 4096-byte text.
#ifndef TCS_RECORD_TC_RANGE_H_
#define TCS_RECORD_TC_RANGE_H_

#include <cstdint>
#include <cstring>

#include "tcs_export.h"

class TCS_EXPORT CTCRange {
 public:
  static constexpr unsigned int kEffectTextSize = 4096;

  // A range whose 4 KB text is about to be overwritten whole, as a query's
  // scratch result is: the numbers are zero, the text is left unset.
  struct TextUnset {};

  CTCRange() : effectText{} {}
  explicit CTCRange(TextUnset) {}
  CTCRange(const CTCRange& other) { CopyFrom(other); }
  CTCRange& operator=(const CTCRange& other) {
    if (this != &other) CopyFrom(other);
    return *this;
  }
  virtual ~CTCRange() = default;

  // Sets code, duration and text together. duration 0xFFFFFFFF keeps the
  // current duration (20 frames when there is none). A caller's text longer
  // than 4095 characters is cut in the caller's own buffer first. Without a
  // text the range gets the standard name of its code, or none for a cut.
  void SetEffect(unsigned int code, char* text, unsigned int duration);

  uint32_t start = 0;
  uint32_t length = 0;
  uint32_t effectCode = 0;
  uint32_t effectDuration = 0;
  char effectText[kEffectTextSize];  // zeroed by the default constructor

 private:
  // One block copy of the text: the member-wise copy that g++ -O2 generates
  // for the array is a byte loop, and every query copies a range out.
  void CopyFrom(const CTCRange& other) {
    start = other.start;
    length = other.length;
    effectCode = other.effectCode;
    effectDuration = other.effectDuration;
    std::memcpy(effectText, other.effectText, sizeof effectText);
  }
};

#endif  // TCS_RECORD_TC_RANGE_H_
