// FindPlayClip: the result selectors, the gap policies and the nearest search,
// one table. Layout 1 is A = [0, 10) from source 100 and B = [20, 30) from
// source 500; layout 2 is C = [10, 20) from source 50; layout 0 is empty.
// Then the searches started from a hint against the same searches without
// one, on random channels. TCS_HINT_SEED and TCS_HINT_RUNS move the seeds.
#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <vector>

#include "lookup/lookup.h"
#include "record/timecode.h"
#include "space/space.h"
#include "support/random_channel.h"
#include "support/test_clips.h"

namespace {

constexpr uint32_t kNone = tcs::kNotFound;  // also: out keeps the start it came with
using tcs::kLastStart;

TEST(LookupSearch, SelectorsGapPoliciesAndNearest) {
  const std::vector<std::array<uint32_t, 3>> layouts[] = {
      {}, {{0, 10, 100}, {20, 10, 500}}, {{10, 10, 50}}};
  const std::array<uint32_t, 5> rows[] = {  // layout, mode, t, result, start chosen
      // Selectors on A and B; bits outside the three fields are ignored.
      {1, 0x10, 5, 0, 0}, {1, 0x20, 5, 9, 0}, {1, 0x00, 5, 10, 0}, {1, 0x30, 5, 10, 0},
      {1, 0x40, 5, 5, 0}, {1, 0x50, 5, 10, 0}, {1, 0x60, 5, 10, 0}, {1, 0x70, 5, 105, 0},
      {1, 0x70, 25, 505, 20}, {1, 0xFFFF0E90, 5, 0, 0},
      // Gap policies between A and B, and past B: none, previous, next.
      {1, 0x10, 15, kNone, kNone}, {1, 0x14, 15, 0, 0}, {1, 0x15, 15, 0, 0}, {1, 0x14, 35, 20, 20},
      {1, 0x18, 15, 20, 20}, {1, 0x19, 15, 20, 20}, {1, 0x110, 15, 20, 20}, {1, 0x111, 15, 20, 20},
      {1, 0x18, 35, kNone, kNone}, {1, 0x110, 35, kNone, kNone}, {1, 0x19, 35, 20, 20},
      {1, 0x71, 35, 515, 20},
      // The nearest search, when bits 0-1 allow it: the closer facing edge,
      // the later play clip on a tie.
      {1, 0x12, 14, 0, 0}, {1, 0x12, 15, 20, 20}, {1, 0x11, 16, 20, 20}, {1, 0x13, 14, 0, 0},
      {1, 0x72, 12, 112, 0}, {1, 0x12, 40, 20, 20}, {1, 0x1F, 15, 20, 20}, {1, 0x0E, 15, 30, 20},
      {1, 0x0C, 15, kNone, kNone},
      // Before the first play clip previous, next and nearest all find it.
      {2, 0x14, 5, 10, 10}, {2, 0x18, 5, 10, 10}, {2, 0x74, 5, 45, 10}, {2, 0x12, 5, 10, 10},
      {2, 0x12, 25, 10, 10}, {2, 0x18, 25, kNone, kNone}, {0, 0x1F, 5, kNone, kNone},
  };
  for (const auto& [layout, mode, t, result, chosen] : rows) {
    SCOPED_TRACE(::testing::Message() << "layout " << layout << std::hex << " mode 0x" << mode
                                      << std::dec << " t " << t);
    CTimeCodeSpace space;
    space.lookups[0] = new CTCLookup(&space);
    for (const auto& [start, length, in] : layouts[layout]) {
      space.AddClip(0, tcs_test::MakeClip(start, length, in).get(), 0);
    }
    CPlayClip out;
    out.start = kNone;
    EXPECT_EQ(space.lookups[0]->FindPlayClip(mode, t, out), result);
    EXPECT_EQ(out.start, chosen);
  }
}

// Overlapping, touching and empty play clips, some past the last start the
// search looks at; every hint (end() too) at every frame near them.
void SearchFromEveryHint(uint64_t seed) {
  tcs_test::Dice u(seed);
  tcs_test::OpenedSpace opened;
  CTimeCodeSpace& space = *opened;
  for (int i = 0, n = int(u(0, 24)); i < n; ++i) {
    const uint32_t start = u(0, 3) == 0 ? kLastStart - 6 + u(0, 12) : u(0, 120);
    const auto made = tcs_test::MakeClip(start, u(0, 5) == 0 ? 0 : u(1, 30), u(0, 900));
    tcs_test::LayPlayClip(space, 0, *made, u(0, 9) != 0);
  }
  if (space.lookups[0] == nullptr) space.lookups[0] = new CTCLookup(&space);
  const CTCLookup& lookup = *space.lookups[0];
  std::vector<uint32_t> ts = {kLastStart + 100, 0xFFFFFFFFu};
  for (uint32_t t = 0; t < 160; ++t) ts.push_back(t);
  for (uint32_t t = kLastStart - 40; t < kLastStart + 40; ++t) ts.push_back(t);
  std::vector<CTCLookup::Position> hints = {lookup.end()};
  for (auto x = lookup.begin(); x != lookup.end(); ++x) hints.push_back(x);
  const uint32_t modes[] = {0x10, 0x14, 0x18, 0x12, 0x0C, 0x70, 0x02};
  for (const uint32_t t : ts) {
    const CTCLookup::Position le = lookup.findle(t);
    for (const CTCLookup::Position hint : hints) {
      ASSERT_TRUE(lookup.findle(t, hint) == le) << "t " << t;
      for (const uint32_t mode : modes) {
        CTCLookup::Position want, got;
        const uint32_t result = lookup.FindPlayClip(mode, t, want);
        ASSERT_EQ(lookup.FindPlayClip(mode, t, got, hint), result) << "t " << t << " mode " << mode;
        ASSERT_TRUE(got == want) << "t " << t << " mode " << mode;
      }
    }
  }
}

TEST(LookupSearch, HintedSearchesAnswerAsTheDescent) {
  tcs_test::ForEachSeed("TCS_HINT", 301, 60, SearchFromEveryHint);
}

}  // namespace
