// TCSSUB_BACKUP: counting and restoring the space file's backups through the
// command record.
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "support/command_record.h"
#include "support/temp_dir.h"
#include "support/test_clips.h"
#include "tcs.h"

namespace {

using tcs_test::NewCommand;
using tcs_test::ReadFile;
using tcs_test::WriteFile;

uint32_t CountBackups(CTimeCodeSpace* space) {
  auto count = NewCommand(TCSCMD_GET, 0, TCSSUB_BACKUP);
  return tcsSetMode(space, count.get());
}

TEST(BackupCommand, CountsAndRestoresThroughTheRecord) {
  tcs_test::TempDir dir;
  const std::string file = dir.File("timeline.spc");
  WriteFile(file, "current");
  for (char i : {'0', '1', '2'}) {
    WriteFile(dir.File(std::string("timeline.00") + i + ".spc"), std::string("backup ") + i);
  }
  tcs_test::OpenedSpace space(file.c_str());
  EXPECT_EQ(CountBackups(space.get()), 3u);

  // Restoring one past the count changes nothing, not even the reply text.
  auto refused = NewCommand(TCSCMD_SET, 0, TCSSUB_BACKUP);
  refused->position = 4;
  EXPECT_EQ(tcsSetMode(space.get(), refused.get()), 0xFFFFFFFFu);
  EXPECT_EQ(refused->position, 0xFFFFFFFFu);
  EXPECT_EQ(TcsCmdReplyText(*refused)[0], '\0');
  EXPECT_EQ(ReadFile(file), "current");
  EXPECT_EQ(CountBackups(space.get()), 3u);

  // Backup 1 (file 000) becomes the space's file; 001 and 002 move down.
  auto restore = NewCommand(TCSCMD_SET, 0, TCSSUB_BACKUP);
  restore->position = 1;
  EXPECT_EQ(tcsSetMode(space.get(), restore.get()), 0xFFFFFFFFu);
  EXPECT_EQ(restore->position, 0xFFFFFFFFu);
  EXPECT_EQ(std::string(TcsCmdReplyText(*restore)), dir.File("timeline.000.spc"));
  EXPECT_EQ(ReadFile(file), "backup 0");
  EXPECT_EQ(ReadFile(dir.File("timeline.000.spc")), "backup 1");
  EXPECT_EQ(ReadFile(dir.File("timeline.001.spc")), "backup 2");
  EXPECT_EQ(CountBackups(space.get()), 2u);
}

}  // namespace
