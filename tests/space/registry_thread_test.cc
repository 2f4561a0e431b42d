// Sharing one space by its handle from many threads at once: every open
// counts, every close uncounts, and the space stays open until the last of
// them. Only opens and closes of that one handle run, so two threads meet on
// its count as often as the scheduler lets them; built under ThreadSanitizer
// as well, which reports any count changed without the registry's lock held
// alone.
#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

#include "support/test_clips.h"
#include "tcs.h"

namespace {

TEST(RegistryThreads, SharedOpensAndClosesOfOneHandleKeepItsCount) {
  constexpr int kThreads = 4;
  constexpr int kRounds = 2000;
  const uint32_t open_before = dlTCS.count;
  CTimeCodeSpace* const space = tcsOpen(nullptr, nullptr, nullptr);
  ASSERT_NE(space, nullptr);
  tcs_test::NotificationLog log;
  log.Install(space);
  ASSERT_EQ(tcsAddClip(space, tcs_test::MakeClip(0, 10).get(), 0), TCS_OK);

  std::atomic<int> wrong_handles{0};
  std::atomic<int> failed_closes{0};
  std::vector<std::thread> threads;
  for (int t = 0; t < kThreads; ++t) {
    threads.emplace_back([&] {
      // Each thread holds up to two shares at a time, so the count also
      // climbs and falls by more than one between the threads' steps.
      for (int round = 0; round < kRounds; ++round) {
        const int shares = 1 + round % 2;
        for (int k = 0; k < shares; ++k) {
          if (tcsOpen(space, nullptr, nullptr) != space) ++wrong_handles;
        }
        for (int k = 0; k < shares; ++k) {
          if (tcsClose(space) != TCS_OK) ++failed_closes;
        }
      }
    });
  }
  for (std::thread& thread : threads) thread.join();

  EXPECT_EQ(wrong_handles.load(), 0);
  EXPECT_EQ(failed_closes.load(), 0);
  // The first open is the only one left: the space is still there, whole.
  EXPECT_EQ(dlTCS.count, open_before + 1);
  EXPECT_TRUE(log.deleted.empty());
  EXPECT_EQ(tcs_test::ListedClips(*space).size(), 1u);
  EXPECT_EQ(tcsClose(space), TCS_OK);
  EXPECT_EQ(dlTCS.count, open_before);
  EXPECT_EQ(log.deleted.size(), 1u);
}

}  // namespace
