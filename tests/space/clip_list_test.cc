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
using tcs_test::LogCapture;
using tcs_test::MakeClip;
using tcs_test::NotificationLog;

unsigned int Throw(void*, CTimeCodeSpace*, CClip*) { throw std::runtime_error("host failure"); }

TEST(ClipList, ARefusingHostKeepsTheListEmptyButEveryAttemptStamps) {
  FakeClock clock(500);
  NotificationLog log;
  tcs_test::OpenedSpace space;
  log.refuse = true;
  log.Install(space.get());
  auto clip = MakeClip(0, 10);
  for (unsigned int now : {1000u, 2000u, 0xFFFFFFF0u}) {
    clock.Set(now);
    EXPECT_EQ(space->__AddClipToList(0, clip.get(), 3), nullptr);
    EXPECT_EQ(space->changeStamp.load(), now);
    EXPECT_EQ(space->checkStamp.load(), now);
  }
  EXPECT_EQ(space->firstClip, nullptr);
  EXPECT_EQ(space->lastClip, nullptr);
  EXPECT_EQ(log.added.size(), 3u);
}

TEST(ClipList, TheHostSeesTheCallersRecordOnAddAndTheUnlinkedCopyOnDelete) {
  NotificationLog log;
  tcs_test::OpenedSpace space;
  // The delete notification must find the record intact but already unlinked.
  struct Seen {
    CClip* clip = nullptr;
    bool unlinked = false;
    std::string name;
  } seen;
  auto on_del = [](void* context, CTimeCodeSpace*, CClip* clip) -> unsigned int {
    auto* s = static_cast<Seen*>(context);
    s->clip = clip;
    s->unlinked = clip->owner == nullptr && clip->next == nullptr && clip->prev == nullptr;
    s->name = clip->name != nullptr ? clip->name : "";
    return 7;  // ignored
  };
  log.Install(space.get());
  tcsSetDelCallback(space.get(), &seen, on_del);

  auto a = MakeClip(0, 10, 100, "a");
  auto b = MakeClip(10, 10, 200, "b");
  CClip* listed_a = space->__AddClipToList(0, a.get(), 5);
  CClip* listed_b = space->__AddClipToList(0, b.get(), 95);
  ASSERT_EQ(log.added, (std::vector<CClip*>{a.get(), b.get()}));
  ASSERT_NE(listed_a, a.get());
  EXPECT_EQ(listed_a->owner, space.get());
  EXPECT_EQ(listed_a->channel, 5u);
  EXPECT_EQ(listed_b->channel, 95u);
  EXPECT_EQ(listed_a->sourceIn, 100u);
  // Packed pointer fields are read by value, never bound to a reference.
  const char* listed_name = listed_a->name;
  const char* callers_name = a->name;
  EXPECT_STREQ(listed_name, "a");
  EXPECT_NE(listed_name, callers_name);  // the copy owns its strings

  space->__DelClipFromList(listed_b);
  EXPECT_EQ(seen.clip, listed_b);
  EXPECT_TRUE(seen.unlinked);
  EXPECT_EQ(seen.name, "b");
  EXPECT_EQ(ListedClips(*space), std::vector<CClip*>{listed_a});
}

TEST(ClipList, RemovalKeepsTheRestLinkedInOrder) {
  // Remove the records at these list positions, in this order, from a list
  // of four, and check the remaining order after each.
  const std::vector<std::vector<size_t>> orders = {{3, 0, 1, 2}, {0, 1, 2, 3}, {1, 2, 0, 3}};
  for (const auto& order : orders) {
    tcs_test::OpenedSpace space;
    auto clip = MakeClip(0, 10);
    std::vector<CClip*> model;
    for (int i = 0; i < 4; ++i) model.push_back(space->__AddClipToList(0, clip.get(), 0));
    const std::vector<CClip*> original = model;
    for (size_t index : order) {
      CClip* doomed = original[index];
      model.erase(std::find(model.begin(), model.end(), doomed));
      space->__DelClipFromList(doomed);
      EXPECT_EQ(ListedClips(*space), model);
      EXPECT_EQ(space->lastClip, model.empty() ? nullptr : model.back());
      space->CheckInvariants();
    }
  }
}

TEST(ClipList, ForeignAndNullRecordsAreIgnoredWithoutStampOrNotification) {
  FakeClock clock(1000);
  NotificationLog log;
  tcs_test::OpenedSpace space;
  tcs_test::OpenedSpace other;
  log.Install(space.get());
  auto clip = MakeClip(0, 10);
  CClip* foreign = other->__AddClipToList(0, clip.get(), 0);
  CClip* mine = space->__AddClipToList(0, clip.get(), 0);
  clock.Set(9999);
  space->__DelClipFromList(nullptr);
  space->__DelClipFromList(foreign);
  space->__DelClipFromList(clip.get());  // unlisted
  EXPECT_EQ(space->changeStamp.load(), 1000u);
  EXPECT_TRUE(log.deleted.empty());
  EXPECT_EQ(ListedClips(*space), std::vector<CClip*>{mine});
  EXPECT_EQ(ListedClips(*other), std::vector<CClip*>{foreign});
}

TEST(ClipList, AThrowingNotificationIsLoggedAndCountsAsYes) {
  LogCapture log;
  tcs_test::OpenedSpace space;
  tcsSetAddCallback(space.get(), nullptr, &Throw);
  tcsSetDelCallback(space.get(), nullptr, &Throw);
  auto clip = MakeClip(0, 10);
  CClip* listed = space->__AddClipToList(0, clip.get(), 0);
  ASSERT_NE(listed, nullptr);
  space->__DelClipFromList(listed);
  EXPECT_EQ(space->firstClip, nullptr);
  EXPECT_EQ(space->ChangeClipCallback(clip.get()), 0u);  // nothing registered
  EXPECT_EQ(log.Lines(), (std::vector<std::string>{
                             "WARNING(tcSpaceXMap): EXP on TCS Add Clip Callback \n\r",
                             "WARNING(tcSpaceXMap): EXP on TCS Del Clip Callback \n\r"}));
}

TEST(ClipList, ASwitchedOffDeleteNotificationLetsDestroyEmptySilently) {
  FakeClock clock(10);
  NotificationLog log;
  tcs_test::OpenedSpace space;
  log.Install(space.get());
  ASSERT_EQ(tcsAddClip(space.get(), MakeClip(0, 10).get(), 0), TCS_OK);
  ASSERT_EQ(tcsAddClip(space.get(), MakeClip(20, 10).get(), 40), TCS_OK);
  tcsSetDelCallback(space.get(), nullptr, nullptr);
  clock.Set(77);
  space->Destroy();
  EXPECT_TRUE(log.deleted.empty());
  EXPECT_EQ(space->firstClip, nullptr);
  EXPECT_EQ(space->changeStamp.load(), 77u);
  ASSERT_NE(space->lookups[40], nullptr);  // emptied, still allocated
  EXPECT_TRUE(space->lookups[40]->empty());
}

TEST(ClipList, EveryChangeReReadsTheFilesTime) {
  const std::string path = ::testing::TempDir() + "clip_list_file_time.spc";
  std::FILE* file = std::fopen(path.c_str(), "w");
  ASSERT_NE(file, nullptr);
  std::fclose(file);
  tcs_test::OpenedSpace space(path.c_str());
  const uint64_t at_open = space->fileTime.load();
  EXPECT_NE(at_open, 0u);
  std::remove(path.c_str());  // the file goes: the next change records 0
  EXPECT_EQ(space->fileTime.load(), at_open);  // opening and queries do not stamp
  ASSERT_EQ(tcsAddClip(space.get(), MakeClip(0, 10).get(), 0), TCS_OK);
  EXPECT_EQ(space->fileTime.load(), 0u);
}

}  // namespace
