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

using tcs_test::NewCommand;

void SetModified(const std::string& file, time_t seconds) {
  const timespec times[2] = {{seconds, 0}, {seconds, 0}};
  ASSERT_EQ(utimensat(AT_FDCWD, file.c_str(), times, 0), 0);
}

enum class Action { kPoll, kAcknowledge, kTouch, kEdit };

struct Step {
  Action action;
  uint32_t clock;     // the clock during the step
  uint32_t argument;  // kAcknowledge: the stamp; kTouch: added to the file's time
  uint32_t result;    // kPoll, kAcknowledge
  uint32_t in_point;  // kPoll: 1 when the file was found changed
};

TEST(ChangeStamp, PollLooksAtTheFileAtMostEvery10000MsUntilAcknowledged) {
  constexpr time_t kBase = 1000000000;
  tcs_test::TempDir dir;
  const std::string file = dir.File("space.tcs");
  tcs_test::WriteFile(file, "timeline");
  SetModified(file, kBase);
  tcs_test::FakeClock clock(0);
  tcs_test::OpenedSpace space(file.c_str());
  ASSERT_NE(space.get(), nullptr);

  const Step steps[] = {
      {Action::kPoll, 5000, 0, 0, 0},
      {Action::kTouch, 5000, 1, 0, 0},
      {Action::kPoll, 10000, 0, 0, 0},  // exactly 10000 away: not looked at
      {Action::kPoll, 10001, 0, 10001, 1},
      {Action::kPoll, 20001, 0, 10001, 0},
      {Action::kPoll, 20002, 0, 20002, 1},  // still unacknowledged: reported again
      {Action::kAcknowledge, 20002, 12345, 12345, 0},
      {Action::kPoll, 22345, 0, 12345, 0},
      {Action::kPoll, 50000, 0, 12345, 0},  // looked at, unchanged since the acknowledgement
      {Action::kTouch, 50000, 2, 0, 0},
      {Action::kPoll, 55000, 0, 12345, 0},  // within 10000 of the last look
      {Action::kPoll, 60001, 0, 60001, 1},
      // The clock wrapped: 5 is far from 0xFFFFF000, not 4101 ms after it.
      {Action::kAcknowledge, 60001, 0xFFFFF000u, 0xFFFFF000u, 0},
      {Action::kTouch, 60001, 3, 0, 0},
      {Action::kPoll, 5, 0, 5, 1},
      // A clock behind the check stamp counts by the distance too.
      {Action::kAcknowledge, 5, 100000, 100000, 0},
      {Action::kTouch, 5, 4, 0, 0},
      {Action::kPoll, 95000, 0, 100000, 0},
      {Action::kPoll, 89999, 0, 89999, 1},
      // An edit records the file's time along with the clock.
      {Action::kTouch, 89999, 5, 0, 0},
      {Action::kEdit, 120000, 0, 0, 0},
      {Action::kPoll, 130001, 0, 120000, 0},
  };
  int n = 0;
  for (const Step& step : steps) {
    SCOPED_TRACE(testing::Message() << "step " << n++);
    clock.Set(step.clock);
    switch (step.action) {
      case Action::kTouch:
        SetModified(file, kBase + step.argument);
        break;
      case Action::kEdit: {
        auto edit = NewCommand(TCSCMD_DELETE, TCSF_POS | TCSF_IN | TCSF_OUT);
        edit->videoMask = 1;
        edit->outPoint = 10;
        EXPECT_EQ(tcsSetMode(space.get(), edit.get()), 0u);
        break;
      }
      case Action::kPoll: {
        auto poll = NewCommand(TCSCMD_GET, 0, TCSSUB_CHANGESTAMP);
        poll->inPoint = 77;
        EXPECT_EQ(tcsSetMode(space.get(), poll.get()), step.result);
        EXPECT_EQ(poll->inPoint, step.in_point);
        break;
      }
      case Action::kAcknowledge: {
        auto ack = NewCommand(TCSCMD_SET, 0, TCSSUB_CHANGESTAMP);
        ack->position = step.argument;
        EXPECT_EQ(tcsSetMode(space.get(), ack.get()), step.result);
        EXPECT_EQ(space->checkStamp.load(), step.argument);
        break;
      }
    }
  }
}

}  // namespace
