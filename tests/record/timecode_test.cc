// The length rule and the two-point rule, as properties over pairs of edge
// and random timecodes.
#include "record/timecode.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <random>
#include <vector>

namespace {

using tcs::kFullLength;
using tcs::kLastStart;
using tcs::kTimelineEnd;

TEST(Timecode, LengthAndTwoPointRules) {
  std::vector<uint32_t> samples = {
      0, 1, kLastStart - 1, kLastStart, kTimelineEnd, kFullLength, 0x80000001u, 0xFFFFFFFFu};
  std::mt19937 rng(7);
  for (int i = 0; i < 250; ++i) samples.push_back(i % 2 ? rng() : rng() % (kTimelineEnd + 2));
  for (uint32_t a : samples) {
    for (uint32_t b : samples) {
      SCOPED_TRACE(::testing::Message() << a << ", " << b);
      // Length b from a start: kept when it fits or is the full length; else
      // kept only when it wraps past 2^32 to end no later than the timeline,
      // and otherwise cut to end exactly at the timeline's end.
      const uint32_t start = std::min(a, kLastStart);
      const uint32_t ruled = tcs::LengthRule(start, b);
      const bool fits = uint64_t(start) + b <= kTimelineEnd || b == kFullLength;
      EXPECT_TRUE(fits         ? ruled == b
                  : ruled == b ? start + b < start && start + b <= kTimelineEnd
                               : start + ruled == kTimelineEnd);
      // The span between a and b: either order, exactly [low, high) inside the
      // timeline, elsewhere clamped by both rules.
      const tcs::Span span = tcs::TwoPointRule(a, b);
      const uint32_t low = std::min(a, b), high = std::max(a, b);
      EXPECT_EQ(span, tcs::TwoPointRule(b, a));
      EXPECT_LE(span.start, kLastStart);
      EXPECT_EQ(span.length, tcs::LengthRule(span.start, span.length));
      EXPECT_TRUE(high > kTimelineEnd || low == high || span == (tcs::Span{low, high - low}));
    }
  }
}

}  // namespace
