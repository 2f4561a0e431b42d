// NodeArena against a plain list of live allocations: random allocations and
// frees, each live one filled with its own pattern, which must survive every
// later step (nothing handed out twice, nothing overlapping).
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <random>
#include <vector>

#include "lookup/node_arena.h"

namespace {

struct Live {
  uint64_t* p;
  size_t size;
  uint64_t stamp;
};

bool Intact(const Live& a) {
  for (size_t i = 0; i < a.size / 8; ++i) {
    if (a.p[i] != a.stamp + i) return false;
  }
  return true;
}

TEST(NodeArena, LiveAllocationsNeverOverlapAcrossReuseAndRelease) {
  constexpr size_t kNodeSize = 40;  // the first size asked for: slots
  constexpr size_t kOtherSize = 72;  // any other size: the heap
  std::mt19937_64 rng(301);
  tcs::NodeArena arena;
  std::vector<Live> live;
  size_t slots = 0;
  for (int step = 0; step < 20000; ++step) {
    SCOPED_TRACE(step);
    // Grow for a while, then drain to empty, which releases every block.
    const bool draining = (step / 2500) % 2 == 1;
    if (live.empty() || rng() % 8 < (draining ? 1u : 6u)) {
      const size_t size = rng() % 16 == 0 && step > 0 ? kOtherSize : kNodeSize;
      auto* p = static_cast<uint64_t*>(arena.Allocate(size, alignof(uint64_t)));
      ASSERT_EQ(reinterpret_cast<uintptr_t>(p) % alignof(std::max_align_t), 0u);
      live.push_back({p, size, rng()});
      for (size_t i = 0; i < size / 8; ++i) p[i] = live.back().stamp + i;
      slots += size == kNodeSize;
    } else {
      const size_t k = rng() % live.size();
      arena.Deallocate(live[k].p, live[k].size, alignof(uint64_t));
      slots -= live[k].size == kNodeSize;
      live.erase(live.begin() + long(k));
    }
    ASSERT_EQ(arena.live(), slots);
    if (step % 97 == 0) {
      for (const Live& a : live) ASSERT_TRUE(Intact(a));
    }
  }
  for (const Live& a : live) arena.Deallocate(a.p, a.size, alignof(uint64_t));
  EXPECT_EQ(arena.reserved(), 0u);
}

}  // namespace
