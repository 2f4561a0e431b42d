// The length rule and the two-point rule, as pure functions: properties over
// random and edge inputs, and a few rows fixed by hand.
#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <vector>

#include "lookup/timecode.h"

namespace {

using tcs::kFullLength;
using tcs::kLastStart;
using tcs::kTimelineEnd;
using tcs::LengthRule;
using tcs::TwoPointRule;

std::vector<uint32_t> Samples() {
  std::vector<uint32_t> out = {0,           1,           kLastStart - 1, kLastStart,
                               kTimelineEnd, kFullLength, 0x80000001u,   0xFFFFFFFFu};
  std::mt19937 rng(7);
  for (int i = 0; i < 300; ++i) out.push_back(i % 2 ? rng() : rng() % (kTimelineEnd + 2));
  return out;
}

TEST(Timecode, LengthRuleProperties) {
  const std::vector<uint32_t> samples = Samples();
  for (uint32_t start : samples) {
    if (start > kLastStart) continue;
    for (uint32_t length : samples) {
      SCOPED_TRACE(::testing::Message() << start << " + " << length);
      const uint32_t ruled = LengthRule(start, length);
      EXPECT_EQ(LengthRule(start, ruled), ruled);
      // Mod 2^32 the ruled span ends at or before the timeline's end, unless
      // it has the exempt length.
      if (ruled != kFullLength) {
        EXPECT_LE(start + ruled, kTimelineEnd);
      }
      // A length is either kept or cut to end exactly at the timeline's end.
      if (ruled != length) {
        EXPECT_EQ(start + ruled, kTimelineEnd);
      }
    }
  }
}

TEST(Timecode, TwoPointRuleProperties) {
  const std::vector<uint32_t> samples = Samples();
  for (uint32_t a : samples) {
    for (uint32_t b : samples) {
      SCOPED_TRACE(::testing::Message() << a << ", " << b);
      const tcs::Span span = TwoPointRule(a, b);
      EXPECT_EQ(span, TwoPointRule(b, a));
      EXPECT_LE(span.start, kLastStart);
      EXPECT_EQ(span.length, LengthRule(span.start, span.length));
      if (a == b) {
        EXPECT_EQ(span.length, 0u);
      }
      const uint32_t low = a < b ? a : b;
      const uint32_t high = a < b ? b : a;
      // Inside the timeline the span is exactly [low, high).
      if (low <= kLastStart && high <= kTimelineEnd) {
        EXPECT_EQ(span, (tcs::Span{low, high - low}));
      }
    }
  }
}

TEST(Timecode, RuleTable) {
  struct Row {
    uint32_t a, b;
    uint32_t length_rule;  // LengthRule(a, b), for a start a up to kLastStart
    tcs::Span two_point;
  };
  const Row rows[] = {
      {kLastStart, 5, 1, {5, kLastStart - 5}},
      {5, kFullLength, kFullLength, {5, kFullLength - 5}},
      {kLastStart - 10, 11, 11, {11, kLastStart - 21}},
      {kLastStart - 10, 20, 11, {20, kLastStart - 30}},
      {kLastStart - 10, kLastStart + 20, 11, {kLastStart - 10, 11}},
      {20000000, 20000100, 0, {kLastStart, 1}},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(::testing::Message() << row.a << ", " << row.b);
    if (row.a <= kLastStart) {
      EXPECT_EQ(LengthRule(row.a, row.b), row.length_rule);
    }
    EXPECT_EQ(TwoPointRule(row.a, row.b), row.two_point);
  }
}

}  // namespace
