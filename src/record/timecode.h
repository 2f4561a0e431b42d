// Record timecode arithmetic: unsigned 32-bit frame counts, every sum and
// difference modulo 2^32, every comparison unsigned. The length rule and the
// two-point rule clamp ranges to the timeline; every edit applies them.
#ifndef TCS_RECORD_TIMECODE_H_
#define TCS_RECORD_TIMECODE_H_

#include <cstdint>

#include "tcs_results.h"

namespace tcs {

// The largest start an edit gives a range (99 hours at 30 frames/s).
inline constexpr uint32_t kLastStart = 10692000;
// One past the end of the timeline.
inline constexpr uint32_t kTimelineEnd = TCS_TIMELINE_END;
// A length exempt from the length rule whatever the start.
inline constexpr uint32_t kFullLength = 10692000;
// Not-found result of every query: a result, never logged.
inline constexpr uint32_t kNotFound = TCS_NOT_FOUND;
// "None" as a timecode or a position.
inline constexpr uint32_t kNoTimecode = TCS_NO_TIMECODE;

struct Span {
  uint32_t start;
  uint32_t length;
  friend bool operator==(const Span&, const Span&) = default;
};

// For a start at most kLastStart: the length, unless the span would run past
// kLastStart, in which case it is cut to end exactly at kTimelineEnd.
// kFullLength is kept at any start.
constexpr uint32_t LengthRule(uint32_t start, uint32_t length) {
  if (start + length <= kLastStart || length == kFullLength) return length;
  return kTimelineEnd - start;
}

// The span between two timecodes, in either order, clamped by the length rule.
constexpr Span TwoPointRule(uint32_t a, uint32_t b) {
  const uint32_t low = a < b ? a : b;
  const uint32_t start = low < kLastStart ? low : kLastStart;
  const uint32_t length = a < b ? b - a : a - b;
  return {start, LengthRule(start, length)};
}

constexpr uint32_t ClampStart(uint32_t t) { return t < kLastStart ? t : kLastStart; }

// t lies in [start, start + length). Wraps for t before start: one compare
// covers both ends.
constexpr bool Contains(uint32_t start, uint32_t length, uint32_t t) {
  return t - start < length;
}

}  // namespace tcs

#endif  // TCS_RECORD_TIMECODE_H_
