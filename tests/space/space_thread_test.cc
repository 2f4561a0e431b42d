// Four threads edit and query one space at once. Each edit and query is
// atomic under the space's lock: afterwards the clip list and the lookups are
// consistent and the list holds exactly the additions minus the deletions the
// host was told of. Built under ThreadSanitizer in CI.
#include <gtest/gtest.h>

#include <random>
#include <thread>
#include <vector>

#include "support/test_clips.h"
#include "tcs.h"

namespace {

// Runs under the space's lock, so the counters need no lock of their own.
struct Counts {
  long added = 0;
  long deleted = 0;
};

unsigned int CountAdd(void* context, CTimeCodeSpace*, CClip*) {
  ++static_cast<Counts*>(context)->added;
  return 0;
}

unsigned int CountDel(void* context, CTimeCodeSpace*, CClip*) {
  ++static_cast<Counts*>(context)->deleted;
  return 0;
}

void Worker(CTimeCodeSpace* space, unsigned seed, int steps) {
  std::mt19937 rng(seed);
  CClip clip;
  for (int step = 0; step < steps; ++step) {
    const uint32_t t = rng() % 3000;
    const uint32_t channel = rng() % 3 == 0 ? 32 : rng() % 2;
    switch (rng() % 4) {
      case 0:
        clip.ClearClip();
        clip.start = t;
        clip.length = 1 + rng() % 200;
        clip.sourceIn = rng() % 10000;
        clip.sourceOut = clip.sourceIn + clip.length;
        EXPECT_EQ(tcsAddClip(space, &clip, channel), TCS_OK);
        break;
      case 1: {
        static const uint32_t kFlags[] = {TCS_EDIT_BLANK, TCS_EDIT_DELETE | TCS_EDIT_RIPPLE,
                                          TCS_EDIT_INSERT | TCS_EDIT_RIPPLE, TCS_EDIT_INSERT};
        space->ModifyRange(t, t + 1 + rng() % 100, 0x3, 0x1, kFlags[rng() % 4]);
        break;
      }
      case 2:
        space->TrimRange(t, rng() % 10000, rng() % 10000, 0x3, 0x1, static_cast<int>(rng() % 2));
        break;
      default: {
        CClip* found = nullptr;
        const uint32_t result = tcsTranslate(space, 0x19, t, &found, channel);
        EXPECT_EQ(result == tcs::kNotFound, found == nullptr);
      }
    }
  }
}

TEST(SpaceThreads, ConcurrentEditsAndQueriesKeepTheSpaceConsistent) {
  Counts counts;  // outlives the space, which reports its records on close
  tcs_test::OpenedSpace space;
  tcsSetAddCallback(space.get(), &counts, &CountAdd);
  tcsSetDelCallback(space.get(), &counts, &CountDel);
  std::vector<std::thread> threads;
  for (unsigned seed = 1; seed <= 4; ++seed) threads.emplace_back(Worker, space.get(), seed, 1500);
  for (std::thread& thread : threads) thread.join();

  space->CheckInvariants();
  long listed = 0;
  for (CClip* c = space->firstClip; c != nullptr; c = c->next) ++listed;
  EXPECT_EQ(listed, counts.added - counts.deleted);
  EXPECT_GT(counts.added, 0);
}

}  // namespace
