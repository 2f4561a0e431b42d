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

// A space keeps its path; sharing it by handle counts opens, and only the
// last close empties it (telling the host of each record).
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
  // The longest path that fits is kept whole; one longer opens nothing.
  const std::string fits(4095, 'a');
  tcs_test::OpenedSpace long_path(fits.c_str());
  ASSERT_NE(long_path.get(), nullptr);
  EXPECT_EQ(std::string(long_path->fileName), fits);
  EXPECT_EQ(tcsOpen(nullptr, nullptr, (fits + 'a').c_str()), nullptr);
  EXPECT_EQ(dlTCS.count, open_before + 2);

  NotificationLog log;
  log.Install(space);
  ASSERT_EQ(tcsAddClip(space, MakeClip(0, 10).get(), 0), TCS_OK);
  ASSERT_EQ(tcsAddClip(space, MakeClip(20, 10).get(), 1), TCS_OK);
  EXPECT_EQ(tcsClose(space), TCS_OK);
  EXPECT_EQ(tcsAddClip(space, MakeClip(40, 10).get(), 0), TCS_OK);  // still open
  EXPECT_TRUE(log.deleted.empty());
  EXPECT_EQ(tcsClose(space), TCS_OK);
  EXPECT_EQ(dlTCS.count, open_before + 1);
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

}  // namespace
