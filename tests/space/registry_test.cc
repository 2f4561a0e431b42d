// Opening, sharing and closing spaces through the registry.
#include <gtest/gtest.h>

#include <string>

#include "support/log_capture.h"
#include "support/test_clips.h"
#include "tcs.h"

namespace {

using tcs_test::LogCapture;
using tcs_test::MakeClip;
using tcs_test::NotificationLog;

TEST(Registry, NewSpaceHasItsDefaults) {
  tcs_test::OpenedSpace space;
  ASSERT_NE(space.get(), nullptr);
  EXPECT_EQ(space->fileName[0], '\0');
  EXPECT_EQ(space->fileTime.load(), 0u);
  EXPECT_EQ(space->changeStamp.load(), 0u);
  EXPECT_EQ(space->checkStamp.load(), 0u);
  EXPECT_EQ(space->clipActive, 0);
  EXPECT_EQ(space->firstClip, nullptr);
  for (CTCLookup* lookup : space->lookups) EXPECT_EQ(lookup, nullptr);
}

TEST(Registry, SharingCountsOpensAndTheLastCloseEmptiesTheSpace) {
  const uint32_t open_before = dlTCS.count;
  CTimeCodeSpace* space = tcsOpen(nullptr, nullptr, "/no/such/file.spc");
  ASSERT_NE(space, nullptr);
  EXPECT_STREQ(space->fileName, "/no/such/file.spc");

  // Shared by its handle: same space, the new path ignored.
  EXPECT_EQ(tcsOpen(space, nullptr, "/other/path"), space);
  EXPECT_STREQ(space->fileName, "/no/such/file.spc");
  EXPECT_EQ(dlTCS.count, open_before + 1);

  NotificationLog log;
  log.Install(space);
  ASSERT_EQ(tcsAddClip(space, MakeClip(0, 10).get(), 0), TCS_OK);
  ASSERT_EQ(tcsAddClip(space, MakeClip(20, 10).get(), 1), TCS_OK);

  EXPECT_EQ(tcsClose(space), TCS_OK);
  EXPECT_EQ(dlTCS.count, open_before + 1);  // still open and usable
  EXPECT_EQ(tcsAddClip(space, MakeClip(40, 10).get(), 0), TCS_OK);
  EXPECT_TRUE(log.deleted.empty());

  EXPECT_EQ(tcsClose(space), TCS_OK);
  EXPECT_EQ(dlTCS.count, open_before);
  EXPECT_EQ(log.deleted.size(), 3u);  // one notification per remaining record
}

TEST(Registry, AnUnregisteredHandleOpensANewSpace) {
  tcs_test::OpenedSpace first;
  CTimeCodeSpace* stranger = reinterpret_cast<CTimeCodeSpace*>(0x1000);
  CTimeCodeSpace* opened = tcsOpen(stranger, nullptr, nullptr);
  ASSERT_NE(opened, nullptr);
  EXPECT_NE(opened, stranger);
  EXPECT_NE(opened, first.get());
  EXPECT_EQ(tcsClose(opened), TCS_OK);
}

TEST(Registry, ClosingAnUnknownHandleIsLoggedUnlessNothingIsOpen) {
  LogCapture log;
  CTimeCodeSpace* stranger = reinterpret_cast<CTimeCodeSpace*>(0x1000);
  ASSERT_EQ(dlTCS.count, 0u);
  EXPECT_EQ(tcsClose(stranger), TCS_OK);
  EXPECT_EQ(tcsClose(nullptr), TCS_OK);
  EXPECT_TRUE(log.Lines().empty());

  tcs_test::OpenedSpace open;
  EXPECT_EQ(tcsClose(stranger), TCS_ERR_BAD_HANDLE);
  EXPECT_EQ(tcsClose(nullptr), TCS_ERR_BAD_HANDLE);
  const std::vector<std::string> expected(2, "TCSpace(0xA8080004)");
  EXPECT_EQ(log.Lines(), expected);

  // A closed handle is unknown from then on.
  CTimeCodeSpace* closed = tcsOpen(nullptr, nullptr, nullptr);
  ASSERT_EQ(tcsClose(closed), TCS_OK);
  EXPECT_EQ(tcsClose(closed), TCS_ERR_BAD_HANDLE);
}

TEST(Registry, APathThatDoesNotFitIsRefusedNotCut) {
  LogCapture log;
  const uint32_t open_before = dlTCS.count;
  const std::string fits(4095, 'a');
  const std::string too_long(4096, 'a');
  CTimeCodeSpace* space = tcsOpen(nullptr, nullptr, fits.c_str());
  ASSERT_NE(space, nullptr);
  EXPECT_EQ(std::string(space->fileName), fits);
  EXPECT_EQ(tcsOpen(nullptr, nullptr, too_long.c_str()), nullptr);
  EXPECT_EQ(dlTCS.count, open_before + 1);
  EXPECT_EQ(log.Lines(), std::vector<std::string>{"TCSpace(0xA8087013)"});
  // Sharing ignores the path altogether, so it cannot fail on it.
  EXPECT_EQ(tcsOpen(space, nullptr, too_long.c_str()), space);
  EXPECT_EQ(tcsClose(space), TCS_OK);
  EXPECT_EQ(tcsClose(space), TCS_OK);
}

TEST(Registry, EntryPointsRefuseHandlesThatAreNotOpen) {
  LogCapture log;
  tcs_test::OpenedSpace keep_registry_busy;
  CTimeCodeSpace* closed = tcsOpen(nullptr, nullptr, nullptr);
  ASSERT_EQ(tcsClose(closed), TCS_OK);
  auto clip = MakeClip(0, 10);
  CClip* found = clip.get();
  for (CTimeCodeSpace* bad : {static_cast<CTimeCodeSpace*>(nullptr), closed}) {
    EXPECT_EQ(tcsAddClip(bad, clip.get(), 0), TCS_ERR_BAD_HANDLE);
    EXPECT_EQ(tcsTranslate(bad, 0, 5, &found, 0), TCS_ERR_BAD_HANDLE);
    EXPECT_EQ(found, clip.get());  // not written
    EXPECT_EQ(tcsSetCurClip(bad, clip.get()), TCS_ERR_NULL_SPACE);
    EXPECT_EQ(tcsGetCurClip(bad, clip.get()), TCS_ERR_NULL_SPACE);
    EXPECT_EQ(tcsClipActive(bad), 0u);
    EXPECT_EQ(tcsSetAddCallback(bad, nullptr, nullptr), TCS_ERR_SETTER_NULL_SPACE);
    EXPECT_EQ(tcsSetDelCallback(bad, nullptr, nullptr), TCS_ERR_SETTER_NULL_SPACE);
    EXPECT_EQ(tcsSetChangeCallback(bad, nullptr, nullptr), TCS_OK);
  }
  const std::vector<std::string> once = {
      "TCSpace(0xA8080004)",       "TCSpace(0xA8080004)",       "TCSpace(0xA8080005)",
      "TCSpace(0xA8080005)",       "clsSetAddCallback(0xE8090004)",
      "clsSetDelCallback(0xE8090004)"};
  std::vector<std::string> expected = once;
  expected.insert(expected.end(), once.begin(), once.end());
  EXPECT_EQ(log.Lines(), expected);
}

// Under LeakSanitizer (and valgrind) this proves the teardown frees all.
TEST(Registry, OpeningAndClosingManySpacesWithClipsLeavesNothingBehind) {
  const uint32_t open_before = dlTCS.count;
  NotificationLog log;
  auto clip = MakeClip(0, 10, 0, "name");
  for (int i = 0; i < 10000; ++i) {
    CTimeCodeSpace* space = tcsOpen(nullptr, nullptr, nullptr);
    log.Install(space);
    clip->start = 0;
    clip->length = 10;
    clip->SetComment("a comment");
    ASSERT_EQ(tcsAddClip(space, clip.get(), static_cast<unsigned>(i % 96)), TCS_OK);
    clip->start = 3;  // strictly inside the first: it splits, a third record appears
    clip->length = 2;
    ASSERT_EQ(tcsAddClip(space, clip.get(), static_cast<unsigned>(i % 96)), TCS_OK);
    ASSERT_EQ(tcsClose(space), TCS_OK);
  }
  EXPECT_EQ(dlTCS.count, open_before);
  EXPECT_EQ(log.added.size(), 30000u);
  EXPECT_EQ(log.deleted.size(), 30000u);
}

}  // namespace
