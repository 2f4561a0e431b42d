// The clip list: records enter as copies after the host accepts them, leave
// with the host told, and every change stamps the space.
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

#include "support/log_capture.h"
#include "support/test_clips.h"
#include "tcs.h"

namespace {

using tcs_test::FakeClock;
using tcs_test::ListedClips;
using tcs_test::MakeClip;
using tcs_test::NotificationLog;

// A refused record is never listed, but each attempt stamps the space.
TEST(ClipList, ARefusingHostKeepsTheListEmptyButEveryAttemptStamps) {
  FakeClock clock(500);
  NotificationLog log;
  tcs_test::OpenedSpace space;
  log.refuse = true;
  log.Install(space.get());
  auto clip = MakeClip(0, 10);
  for (unsigned int now : {1000u, 0xFFFFFFF0u}) {
    clock.Set(now);
    EXPECT_EQ(space->__AddClipToList(0, clip.get(), 3), nullptr);
    EXPECT_EQ(space->changeStamp.load() + space->checkStamp.load(), 2 * now);
  }
  EXPECT_EQ(space->firstClip, nullptr);
  EXPECT_EQ(log.added, std::vector<CClip*>(2, clip.get()));  // the caller's record
}

// A listed record is a copy owning its strings, on the channel asked for;
// the delete notification sees it unlinked but intact.
TEST(ClipList, TheDeleteNotificationSeesTheIntactUnlinkedRecord) {
  static struct Seen {
    CClip* clip;
    bool unlinked;
    uint32_t source_in;
  } seen;
  tcs_test::OpenedSpace space;
  tcsSetDelCallback(space.get(), nullptr, [](void*, CTimeCodeSpace*, CClip* clip) {
    seen = {clip, clip->owner == nullptr && clip->next == nullptr && clip->prev == nullptr,
            clip->sourceIn};
    return 7u;  // ignored
  });
  auto a = MakeClip(0, 10, 100, "a");
  CClip* listed_a = space->__AddClipToList(0, a.get(), 5);
  CClip* listed_b = space->__AddClipToList(0, MakeClip(10, 10, 200).get(), 95);
  EXPECT_EQ(std::make_tuple(listed_a->owner, listed_a->channel, listed_b->channel),
            std::make_tuple(space.get(), 5u, 95u));
  // Packed pointer fields are read by value, never bound to a reference.
  const char *listed_name = listed_a->name, *callers_name = a->name;
  EXPECT_STREQ(listed_name, "a");
  EXPECT_NE(listed_name, callers_name);
  space->__DelClipFromList(listed_b);
  EXPECT_EQ(std::make_tuple(seen.clip, seen.unlinked, seen.source_in),
            std::make_tuple(listed_b, true, 200u));
  EXPECT_EQ(ListedClips(*space), std::vector<CClip*>{listed_a});
}

// Deleting a null, foreign or unlisted record does nothing; without a delete
// notification Destroy empties the list silently and stamps.
TEST(ClipList, ForeignAndNullRecordsAreIgnoredWithoutStampOrNotification) {
  FakeClock clock(1000);
  NotificationLog log;
  tcs_test::OpenedSpace space, other;
  log.Install(space.get());
  auto clip = MakeClip(0, 10);
  CClip* foreign = other->__AddClipToList(0, clip.get(), 0);
  CClip* mine = space->__AddClipToList(0, clip.get(), 0);
  clock.Set(9999);
  for (CClip* ignored : {static_cast<CClip*>(nullptr), foreign, clip.get()}) {
    space->__DelClipFromList(ignored);
  }
  EXPECT_EQ(space->changeStamp.load(), 1000u);
  EXPECT_TRUE(log.deleted.empty());
  EXPECT_EQ(ListedClips(*space), std::vector<CClip*>{mine});
  EXPECT_EQ(ListedClips(*other), std::vector<CClip*>{foreign});
  tcsSetDelCallback(space.get(), nullptr, nullptr);
  space->Destroy();
  EXPECT_EQ(space->firstClip, nullptr);
  EXPECT_EQ(space->changeStamp.load(), 9999u);
}

// A notification that throws is logged and counts as a yes.
TEST(ClipList, AThrowingNotificationIsLoggedAndCountsAsYes) {
  tcs_test::LogCapture log;
  tcs_test::OpenedSpace space;
  auto raise = [](void*, CTimeCodeSpace*, CClip*) -> unsigned int {
    throw std::runtime_error("host failure");
  };
  tcsSetAddCallback(space.get(), nullptr, raise);
  tcsSetDelCallback(space.get(), nullptr, raise);
  CClip* listed = space->__AddClipToList(0, MakeClip(0, 10).get(), 0);
  ASSERT_NE(listed, nullptr);
  space->__DelClipFromList(listed);
  EXPECT_EQ(space->firstClip, nullptr);
  EXPECT_EQ(log.Lines(), (std::vector<std::string>{
                             "WARNING(tcSpaceXMap): EXP on TCS Add Clip Callback \n\r",
                             "WARNING(tcSpaceXMap): EXP on TCS Del Clip Callback \n\r"}));
}

// The file's time is read on opening and again on every change, not on queries.
TEST(ClipList, EveryChangeReReadsTheFilesTime) {
  const std::string path = ::testing::TempDir() + "clip_list_file_time.spc";
  std::fclose(std::fopen(path.c_str(), "w"));
  tcs_test::OpenedSpace space(path.c_str());
  const uint64_t at_open = space->fileTime.load();
  EXPECT_NE(at_open, 0u);
  std::remove(path.c_str());
  EXPECT_EQ(space->fileTime.load(), at_open);
  ASSERT_EQ(tcsAddClip(space.get(), MakeClip(0, 10).get(), 0), TCS_OK);
  EXPECT_EQ(space->fileTime.load(), 0u);
}

}  // namespace
