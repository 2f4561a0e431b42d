// The backup entry points: handle checks and one pass through each.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/log_capture.h"
#include "support/temp_dir.h"
#include "support/test_clips.h"
#include "tcs.h"

namespace {

using tcs_test::LogCapture;
using tcs_test::OpenedSpace;
using tcs_test::ReadFile;
using tcs_test::TempDir;
using tcs_test::WriteFile;

// A null or closed space: the count answers 0, the restore refuses; both log
// the handle status and touch nothing.
TEST(BackupApi, BadSpacesAreRefusedAndLogged) {
  OpenedSpace closed;
  ASSERT_EQ(closed.Close(), 0u);
  for (CTimeCodeSpace* space : {static_cast<CTimeCodeSpace*>(nullptr), closed.get()}) {
    LogCapture log;
    char restored[4096] = "untouched";
    EXPECT_EQ(tcsGetNumberOfBackUpsAvailable(space), 0u);
    EXPECT_EQ(tcsSetBackUpRestore(space, 1, restored), TCS_ERR_BAD_HANDLE);
    EXPECT_STREQ(restored, "untouched");
    EXPECT_EQ(log.Lines(),
              (std::vector<std::string>{"TCSpace(0xA8080004)", "TCSpace(0xA8080004)"}));
  }
}

TEST(BackupApi, CountAndRestoreTheSpacesFile) {
  TempDir dir;
  const std::string file = dir.File("timeline.spc");
  WriteFile(file, "space");
  WriteFile(dir.File("timeline.000.spc"), "A");
  WriteFile(dir.File("timeline.001.spc"), "B");
  OpenedSpace space(file.c_str());
  ASSERT_NE(space.get(), nullptr);
  EXPECT_EQ(tcsGetNumberOfBackUpsAvailable(space.get()), 2u);
  char restored[4096] = {};
  EXPECT_EQ(tcsSetBackUpRestore(space.get(), 1, restored), 0xFFFFFFFFu);
  EXPECT_EQ(std::string(restored), dir.File("timeline.000.spc"));
  EXPECT_EQ(ReadFile(file), "A");
  EXPECT_EQ(ReadFile(dir.File("timeline.000.spc")), "B");
  EXPECT_EQ(tcsGetNumberOfBackUpsAvailable(space.get()), 1u);
  EXPECT_EQ(tcsSetBackUpRestore(space.get(), 2, restored), 0xFFFFFFFFu);
  EXPECT_EQ(ReadFile(file), "A");
}

// A space bound to no file has no backups and restores nothing.
TEST(BackupApi, SpaceWithoutFile) {
  OpenedSpace space;
  ASSERT_NE(space.get(), nullptr);
  LogCapture log;
  EXPECT_EQ(tcsGetNumberOfBackUpsAvailable(space.get()), 0u);
  EXPECT_EQ(tcsSetBackUpRestore(space.get(), 0, nullptr), 0xFFFFFFFFu);
  EXPECT_TRUE(log.Lines().empty());
}

}  // namespace
