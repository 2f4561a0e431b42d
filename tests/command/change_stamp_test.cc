// The change-stamp poll and its acknowledgement, driven by the test's clock
// and a real file whose modification time the test moves.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <string>

#include "support/command_record.h"
#include "support/temp_dir.h"
#include "support/test_clips.h"
#include "tcs.h"

namespace {

// Each step sets the clock, then polls (acknowledge 0) or acknowledges with
// that stamp. A poll writes inPoint 1 when it found the file changed, else 0;
// an acknowledgement leaves the 77 put there. With `touch` the file is
// modified after the step.
TEST(ChangeStamp, PollLooksAtTheFileAtMostEvery10000MsUntilAcknowledged) {
  tcs_test::TempDir dir;
  const std::string file = dir.File("space.tcs");
  tcs_test::WriteFile(file, "timeline");
  tcs_test::FakeClock clock(0);
  tcs_test::OpenedSpace space(file.c_str());
  const struct {
    uint32_t clock, acknowledge, result, in_point;
    bool touch = false;
  } steps[] = {
      // Not looked at within 10000 ms of the last look (opening, at 0).
      {5000, 0, 0, 0, true}, {10000, 0, 0, 0},
      // Found changed, and reported again while not acknowledged.
      {10001, 0, 10001, 1}, {20001, 0, 10001, 0}, {20002, 0, 20002, 1},
      // Acknowledged; looked at since, unchanged.
      {20002, 12345, 12345, 77}, {50000, 0, 12345, 0},
      // The clock wrapped: 5 is far from 0xFFFFF000, not 4101 ms after it.
      {60001, 0xFFFFF000u, 0xFFFFF000u, 77, true}, {5, 0, 5, 1},
  };
  time_t modified = 1000000000;
  for (const auto& step : steps) {
    SCOPED_TRACE(step.clock);
    clock.Set(step.clock);
    auto record = tcs_test::NewCommand(step.acknowledge != 0 ? TCSCMD_SET : TCSCMD_GET, 0,
                                       TCSSUB_CHANGESTAMP);
    record->position = step.acknowledge;
    record->inPoint = 77;
    EXPECT_EQ(tcsSetMode(space.get(), record.get()), step.result);
    EXPECT_EQ(record->inPoint, step.in_point);
    const timespec times[2] = {{++modified, 0}, {modified, 0}};
    if (step.touch) {
      ASSERT_EQ(utimensat(AT_FDCWD, file.c_str(), times, 0), 0);
    }
  }
}

}  // namespace
