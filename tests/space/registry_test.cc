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

TEST(Registry, SharingCountsOpensAndTheLastCloseEmptiesTheSpace) {
  const uint32_t open_before = dlTCS.count;
  CTimeCodeSpace* space = tcsOpen(nullptr, nullptr, "/no/such/file.spc");
  ASSERT_NE(space, nullptr);
  EXPECT_STREQ(space->fileName, "/no/such/file.spc");
  EXPECT_EQ(space->fileTime.load() + space->changeStamp.load() + space->clipActive, 0u);
  // Shared by its handle: same space, the new path ignored.
  EXPECT_EQ(tcsOpen(space, nullptr, "/other/path"), space);
  EXPECT_STREQ(space->fileName, "/no/such/file.spc");
  EXPECT_EQ(dlTCS.count, open_before + 1);
  // A handle that is not registered opens a new space.
  CTimeCodeSpace* other = tcsOpen(reinterpret_cast<CTimeCodeSpace*>(0x1000), nullptr, nullptr);
  EXPECT_NE(other, space);
  EXPECT_EQ(tcsClose(other), TCS_OK);

  NotificationLog log;
  log.Install(space);
  ASSERT_EQ(tcsAddClip(space, MakeClip(0, 10).get(), 0), TCS_OK);
  ASSERT_EQ(tcsAddClip(space, MakeClip(20, 10).get(), 1), TCS_OK);
  EXPECT_EQ(tcsClose(space), TCS_OK);
  EXPECT_EQ(tcsAddClip(space, MakeClip(40, 10).get(), 0), TCS_OK);  // still open
  EXPECT_TRUE(log.deleted.empty());
  EXPECT_EQ(tcsClose(space), TCS_OK);
  EXPECT_EQ(dlTCS.count, open_before);
  EXPECT_EQ(log.deleted.size(), 3u);  // one notification per remaining record
}

// With spaces open, an unknown handle is refused and logged (the bad-input
// table); with none open, closing it is a quiet no-op.
TEST(Registry, ClosingAnUnknownHandleWhileNothingIsOpenIsQuiet) {
  LogCapture log;
  ASSERT_EQ(dlTCS.count, 0u);
  EXPECT_EQ(tcsClose(reinterpret_cast<CTimeCodeSpace*>(0x1000)), TCS_OK);
  EXPECT_TRUE(log.Lines().empty());
}

TEST(Registry, APathThatDoesNotFitIsRefusedNotCut) {
  LogCapture log;
  const std::string fits(4095, 'a'), too_long(4096, 'a');
  tcs_test::OpenedSpace space(fits.c_str());
  ASSERT_NE(space.get(), nullptr);
  EXPECT_EQ(std::string(space->fileName), fits);
  const uint32_t open_before = dlTCS.count;
  EXPECT_EQ(tcsOpen(nullptr, nullptr, too_long.c_str()), nullptr);
  EXPECT_EQ(dlTCS.count, open_before);
  EXPECT_EQ(log.Lines(), std::vector<std::string>{"TCSpace(0xA8087013)"});
  // Sharing ignores the path altogether, so it cannot fail on it.
  EXPECT_EQ(tcsOpen(space.get(), nullptr, too_long.c_str()), space.get());
  EXPECT_EQ(tcsClose(space.get()), TCS_OK);
}

// Under LeakSanitizer (and valgrind) this proves the teardown frees all.
TEST(Registry, OpeningAndClosingManySpacesWithClipsLeavesNothingBehind) {
  const uint32_t open_before = dlTCS.count;
  NotificationLog log;
  auto clip = MakeClip(0, 10, 0, "name");
  clip->SetComment("a comment");
  for (int i = 0; i < 192; ++i) {  // every channel twice
    CTimeCodeSpace* space = tcsOpen(nullptr, nullptr, nullptr);
    log.Install(space);
    clip->start = 0;
    clip->length = 10;
    ASSERT_EQ(tcsAddClip(space, clip.get(), static_cast<unsigned>(i % 96)), TCS_OK);
    clip->start = 3;  // strictly inside the first: it splits, a third record appears
    clip->length = 2;
    ASSERT_EQ(tcsAddClip(space, clip.get(), static_cast<unsigned>(i % 96)), TCS_OK);
    ASSERT_EQ(tcsClose(space), TCS_OK);
  }
  EXPECT_EQ(dlTCS.count, open_before);
  EXPECT_EQ(log.added.size(), 3u * 192);
  EXPECT_EQ(log.deleted.size(), 3u * 192);
}

}  // namespace
