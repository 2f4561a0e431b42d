// Concurrent hosts: eight threads on one shared space (edits through the
// command record, additions, translations, searches with the current clip,
// and one thread walking the timeline), while four more open, fill and
// close spaces of their own and open and close the shared space by its
// handle. Every call must be atomic: afterwards the space is consistent, its
// list holds exactly the additions minus the deletions the host was told of,
// and the walker never saw an event it could not have seen. Built under
// ThreadSanitizer as well as AddressSanitizer. TCS_STRESS_STEPS overrides
// the number of steps per thread.
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <random>
#include <thread>
#include <vector>

#include "record/timecode.h"
#include "support/command_record.h"
#include "support/test_clips.h"
#include "tcs.h"

namespace {

using Rng = std::mt19937;

// The notifications run under the shared space's lock, so the counters need
// no lock of their own; every eleventh addition is refused.
struct Counts {
  long asked = 0, added = 0, deleted = 0;
};

std::unique_ptr<CClip> RandomClip(Rng& rng) {
  const uint32_t length = 1 + rng() % 300;
  return tcs_test::MakeClip(rng() % 4000, length, rng() % 10000, rng() % 2 ? "a" : "b");
}

uint32_t RandomChannel(Rng& rng) {
  static constexpr uint32_t kChannels[] = {0, 1, 2, 32, 33, 70};
  return kChannels[rng() % 6];
}

void Edit(CTimeCodeSpace* space, Rng& rng) {
  static const uint32_t kCommands[] = {TCSCMD_INSERT, TCSCMD_CLEAR, TCSCMD_DELETE, TCSCMD_TRIM};
  static const uint32_t kFlags[] = {TCSF_MARKS, TCSF_MARKS | TCSF_RIPPLE, TCSF_POS | TCSF_AT,
                                    TCSF_POS | TCSF_IN, TCSF_MARKS | TCSF_TEXT};
  auto record = tcs_test::NewCommand(kCommands[rng() % 4], kFlags[rng() % 5]);
  record->videoMask = rng() % 8;
  record->audioMask = rng() % 4;
  record->position = rng() % 4000;
  record->inPoint = rng() % 4000;
  record->outPoint = record->inPoint + rng() % 200;
  std::strcpy(record->longText, "long");
  const uint32_t status = tcsSetMode(space, record.get());
  EXPECT_TRUE(status == TCS_OK || status == TCS_ERR_BAD_ARGUMENTS) << std::hex << status;
}

void Add(CTimeCodeSpace* space, Rng& rng) {
  const uint32_t status = tcsAddClip(space, RandomClip(rng).get(), RandomChannel(rng));
  EXPECT_TRUE(status == TCS_OK || status == TCS_ERR_ADD_REFUSED) << std::hex << status;
}

void Translate(CTimeCodeSpace* space, Rng& rng) {
  CClip* found = nullptr;  // borrowed: never read, another thread may free it
  const uint32_t result =
      tcsTranslate(space, rng() % 2 ? 0x19 : 0, rng() % 4500, &found, RandomChannel(rng));
  EXPECT_EQ(result == tcs::kNotFound, found == nullptr);
}

// Searches, then reads and sometimes replaces the current clip, which
// another thread's search or edit may have changed or removed meanwhile:
// each answer must be one of those the entry point can give.
void Search(CTimeCodeSpace* space, Rng& rng) {
  CClip* found = nullptr;
  tcsFindClip(space, 24, rng() % 4500, &found, RandomChannel(rng));
  CClip copy;
  const uint32_t got = tcsGetCurClip(space, &copy);
  EXPECT_TRUE(got == TCS_OK || got == TCS_ERR_NO_CURRENT_CLIP) << std::hex << got;
  if (got != TCS_OK || rng() % 4 != 0) return;
  copy.sourceIn += 1;
  copy.sourceOut = copy.sourceIn + copy.length;
  const uint32_t set = tcsSetCurClip(space, &copy);
  EXPECT_TRUE(set == TCS_OK || set == TCS_ERR_NO_CURRENT_CLIP || set == TCS_ERR_BAD_ARGUMENTS ||
              set == TCS_ERR_ADD_REFUSED)
      << std::hex << set;
}

// Walks the timeline again and again. Each step is atomic, so each event it
// reports is a clip that started at the reported frame at that moment.
void Walk(CTimeCodeSpace* space, int steps) {
  auto record = tcs_test::NewCommand(TCSCMD_GET, 0, TCSSUB_NEXT);
  for (int step = 0; step < steps; ++step) {
    if (step == 0 || record->position == tcs::kNoTimecode) {
      record = tcs_test::NewCommand(TCSCMD_GET, 0, TCSSUB_NEXT);
      record->outPoint = tcs::kNoTimecode;
    }
    CClip clip;
    const uint32_t start = tcsFindNextClip(space, record.get(), 0, &clip);
    if (start == tcs::kNotFound) {
      EXPECT_EQ(record->position, tcs::kNoTimecode);
      continue;
    }
    EXPECT_EQ(start, clip.start);
    EXPECT_NE(record->videoMask | record->audioMask, 0u);
  }
}

// Opens, fills and closes a space of its own, and shares the common space
// meanwhile, which must keep it open whatever the others do.
void OpenAndClose(CTimeCodeSpace* shared, Rng& rng) {
  CTimeCodeSpace* own = tcsOpen(nullptr, nullptr, nullptr);
  ASSERT_NE(own, nullptr);
  for (int k = 0; k < 3; ++k) EXPECT_EQ(tcsAddClip(own, RandomClip(rng).get(), 0), TCS_OK);
  ASSERT_EQ(tcsOpen(shared, nullptr, nullptr), shared);
  CClip* found = nullptr;
  tcsTranslate(shared, 0, rng() % 4000, &found, 0);
  EXPECT_EQ(tcsClose(own), TCS_OK);
  EXPECT_EQ(tcsClose(shared), TCS_OK);
}

TEST(HostThreads, ManyHostsOnOneSpaceAndManySpacesAtOnce) {
  const char* env = std::getenv("TCS_STRESS_STEPS");
  const int steps = env != nullptr ? std::atoi(env) : 3000;
  Counts counts;  // outlives the space, which reports its records on close
  tcs_test::OpenedSpace space;
  CTimeCodeSpace* const s = space.get();
  ASSERT_EQ(tcsSetAddCallback(s, &counts, [](void* context, CTimeCodeSpace*, CClip*) {
              auto* n = static_cast<Counts*>(context);
              return ++n->asked % 11 == 0 ? 1u : (++n->added, 0u);
            }),
            TCS_OK);
  ASSERT_EQ(tcsSetDelCallback(s, &counts, [](void* context, CTimeCodeSpace*, CClip*) {
              return ++static_cast<Counts*>(context)->deleted, 0u;
            }),
            TCS_OK);
  std::vector<std::thread> threads;
  const auto start = [&](void (*step)(CTimeCodeSpace*, Rng&), unsigned seed, int n) {
    threads.emplace_back([=] {
      Rng rng(seed);
      for (int i = 0; i < n; ++i) step(s, rng);
    });
  };
  for (auto step : {Edit, Edit, Add, Add, Translate, Search, Search}) {
    start(step, unsigned(threads.size() + 1), steps);
  }
  threads.emplace_back(Walk, s, steps);
  for (unsigned seed = 10; seed < 14; ++seed) start(OpenAndClose, seed, steps / 4);
  for (std::thread& thread : threads) thread.join();

  s->CheckInvariants();
  EXPECT_EQ(long(tcs_test::ListedClips(*s).size()), counts.added - counts.deleted);
  EXPECT_GT(counts.added, steps / 2);
  EXPECT_GT(counts.asked, counts.added);
}

}  // namespace
