// The spans of one track against a brute-force model: a frame-by-frame
// owner per frame of a small window. Each span laid must report exactly the
// earlier events that still own a frame it covers, whether the spans came
// in record order (the vector) or not (the tree).
#include <cstdint>
#include <cstdlib>
#include <random>
#include <set>
#include <vector>

#include <gtest/gtest.h>

#include "cmx3600/track_spans.h"

namespace tcs::cmx3600 {
namespace {

TEST(Cmx3600TrackSpans, ReportsWhatAFrameModelSaysIsCovered) {
  const char* seed_text = std::getenv("TCS_TEST_SEED");
  const uint32_t seed = seed_text != nullptr ? uint32_t(std::strtoul(seed_text, nullptr, 10)) : 301;
  std::mt19937 rng(seed);
  constexpr uint32_t kWindow = 200;
  for (int round = 0; round < 200; ++round) {
    TrackSpans spans;
    std::vector<uint32_t> owner(kWindow, 0);  // 0: nothing plays there
    uint32_t next = 0;
    const bool in_order = round % 2 == 0;  // the first rounds stay on the vector
    for (uint32_t line = 1; line <= 40; ++line) {
      SCOPED_TRACE(testing::Message() << "seed " << seed << " round " << round << " line " << line);
      uint32_t in, out;
      if (in_order && line < 30) {
        in = next + rng() % 3;
        out = in + 1 + rng() % 8;
        if (out > kWindow) break;
        next = out;
      } else {
        in = rng() % (kWindow - 1);
        out = in + 1 + rng() % std::min<uint32_t>(40, kWindow - in - 1);
      }
      std::set<uint32_t> expected;
      for (uint32_t f = in; f < out; ++f) {
        if (owner[f] != 0) expected.insert(owner[f]);
        owner[f] = line;
      }
      std::set<uint32_t> reported;
      spans.Lay(in, out, line, [&](uint32_t earlier) { reported.insert(earlier); });
      ASSERT_EQ(reported, expected);
    }
  }
}

}  // namespace
}  // namespace tcs::cmx3600
