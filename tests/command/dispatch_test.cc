// tcsSetMode's checks, in their order, and its routing by command and
// sub-command, down to the backups it counts and restores.
#include <gtest/gtest.h>

#include <cstring>
#include <set>
#include <utility>
#include <string>
#include <vector>

#include "support/command_record.h"
#include "support/log_capture.h"
#include "support/temp_dir.h"
#include "support/test_clips.h"
#include "tcs.h"

namespace {

using tcs_test::NewCommand;
using tcs_test::SameBytes;
using Lines = std::vector<std::string>;

TEST(Dispatch, ChecksThenIgnoredAndUnknownCommands) {
  // Answers and log lines of the checks are in the bad-input table; here:
  // a null space answers before the type is looked at, and a wrong type
  // leaves every byte of the record alone.
  tcs_test::OpenedSpace space;
  tcs_test::LogCapture log;
  auto record = NewCommand(TCSCMD_DELETE, TCSF_POS | TCSF_IN | TCSF_OUT);
  record->type = 0xFA250201u;
  const TCSCMD before = *record;
  EXPECT_EQ(tcsSetMode(space.get(), record.get()), 0xA8087004u);
  EXPECT_TRUE(SameBytes(*record, before));
  EXPECT_EQ(tcsSetMode(nullptr, record.get()), 0xFFFFFFFFu);
  EXPECT_EQ(record->position, 0xFFFFFFFFu);
  EXPECT_EQ(log.Lines(), Lines{"TCSpace(0xA8087004)"});

  // Every command number below 22, and a few above: the ignored ones return
  // 0 with the record untouched. The others are seen to run: the edits and
  // the commands without a handler pass the edit path, which writes a size
  // of 0 back as 56; a get or set of sub-command 0 answers 0xFFFFFFFF. Only
  // the edits change the timeline.
  const std::set<uint32_t> ignored = {0, 1, 2, 5, 6, 12, 13, 17, 18, 19, 21};
  const std::set<uint32_t> handled = {7, 8, 9, 10, 14, 15, 16};
  std::vector<uint32_t> commands = {22, 30, 0xFFFFFFFFu};
  for (uint32_t command = 0; command < 22; ++command) commands.push_back(command);
  for (uint32_t command : commands) {
    SCOPED_TRACE(command);
    tcs_test::OpenedSpace fresh;
    ASSERT_EQ(tcsAddClip(fresh.get(), tcs_test::MakeClip(100, 100, 1000).get(), 0), 0u);
    // What would blank the clip under TCSCMD_CLEAR.
    record = NewCommand(command, TCSF_POS | TCSF_IN | TCSF_OUT | TCSF_ALL);
    record->size = 0;
    record->videoMask = 1;
    record->outPoint = 1000;
    const TCSCMD sent = *record;
    log.Clear();
    const uint32_t result = tcsSetMode(fresh.get(), record.get());
    if (handled.count(command) != 0) {
      EXPECT_TRUE(result != 0 || !SameBytes(*record, sent));
      continue;
    }
    TCSCMD expected = sent;
    if (ignored.count(command) == 0) expected.size = 56;
    EXPECT_EQ(result, 0u);
    EXPECT_TRUE(SameBytes(*record, expected)) << "size " << record->size;
    EXPECT_EQ(tcs_test::PlaySpans(*fresh, 0), (std::vector<tcs_test::PlaySpan>{{100, 100, 1000}}));
    EXPECT_EQ(log.Lines(), Lines{});
  }
}

// A walk step finds the clip under every get and set; the walk's end reads
// as "none" under a get and as not found under a set. Unknown sub-commands
// are "none" and leave position alone. TCSCMD_GET_ALT is TCSCMD_GET.
TEST(Dispatch, SubCommands) {
  tcs_test::OpenedSpace space;
  ASSERT_EQ(tcsAddClip(space.get(), tcs_test::MakeClip(100, 50, 7, "a").get(), 0), 0u);
  tcs_test::LogCapture log;
  for (uint32_t command : {TCSCMD_GET, TCSCMD_GET_ALT, TCSCMD_SET}) {
    for (uint32_t sub : {TCSSUB_NEXT, TCSSUB_NEXT_EVENT}) {
      SCOPED_TRACE(testing::Message() << command << "/" << sub);
      auto walk = NewCommand(command, 0, sub);
      walk->outPoint = 0xFFFFFFFFu;
      EXPECT_EQ(tcsSetMode(space.get(), walk.get()), 100u);
      EXPECT_STREQ(walk->text, "a");
      EXPECT_EQ(tcsSetMode(space.get(), walk.get()),
                command == TCSCMD_SET ? 0x80000001u : 0xFFFFFFFFu);
      EXPECT_EQ(walk->position, 0xFFFFFFFFu);
    }
    auto unknown = NewCommand(command, 0, 95);
    unknown->position = 5;
    EXPECT_EQ(tcsSetMode(space.get(), unknown.get()), 0xFFFFFFFFu);
    EXPECT_EQ(unknown->position, 5u);
  }
  EXPECT_EQ(log.Lines(), Lines{});
}

// Two channels start at the same frame with different sources: a get or a
// set of TCSSUB_NEXT reports each once, carrying the first one's mark into
// the second step, then moves on; TCSSUB_NEXT_EVENT keeps only the last
// event's marks. Each step is the walk entry point's with the same marks.
TEST(Dispatch, WalkStepsKeepOrFreshenTheirMarks) {
  tcs_test::OpenedSpace space;
  ASSERT_EQ(tcsAddClip(space.get(), tcs_test::MakeClip(100, 50, 0, "a").get(), 0), 0u);
  ASSERT_EQ(tcsAddClip(space.get(), tcs_test::MakeClip(100, 50, 500, "b").get(), 1), 0u);
  ASSERT_EQ(tcsAddClip(space.get(), tcs_test::MakeClip(200, 10, 900, "c").get(), 0), 0u);
  for (uint32_t command : {TCSCMD_GET, TCSCMD_GET_ALT, TCSCMD_SET}) {
    for (uint32_t sub : {TCSSUB_NEXT, TCSSUB_NEXT_EVENT}) {
      SCOPED_TRACE(testing::Message() << command << "/" << sub);
      auto walk = NewCommand(command, 0, sub);
      walk->outPoint = 0xFFFFFFFFu;
      auto twin = NewCommand(command, 0, sub);
      twin->outPoint = 0xFFFFFFFFu;
      std::vector<std::pair<uint32_t, uint32_t>> events;  // start, marks after the step
      for (int step = 0; step < 8 && walk->position != 0xFFFFFFFFu; ++step) {
        const uint32_t start = tcsSetMode(space.get(), walk.get());
        const uint32_t twin_start = tcsFindNextClip(space.get(), twin.get(),
                                                    sub == TCSSUB_NEXT_EVENT, nullptr);
        EXPECT_EQ(start == 0x80000001u || start == 0xFFFFFFFFu ? 0x80000001u : start, twin_start);
        EXPECT_TRUE(SameBytes(*walk, *twin)) << "step " << step;
        if (walk->position != 0xFFFFFFFFu) events.emplace_back(start, walk->videoMask);
      }
      if (sub == TCSSUB_NEXT) {
        const std::vector<std::pair<uint32_t, uint32_t>> each_once = {{100, 1}, {100, 3}, {200, 1}};
        EXPECT_EQ(events, each_once);
        EXPECT_EQ(walk->position, 0xFFFFFFFFu);
      } else {
        // Back and forth between the two channels at 100.
        EXPECT_EQ(events.size(), 8u);
        for (size_t k = 0; k < events.size(); ++k) {
          EXPECT_EQ(events[k], std::make_pair(100u, k % 2 == 0 ? 1u : 2u)) << k;
        }
      }
    }
  }
}

TEST(Dispatch, CountsAndRestoresBackups) {
  tcs_test::TempDir dir;
  const std::string file = dir.File("timeline.spc"), first = dir.File("timeline.000.spc");
  tcs_test::WriteFile(file, "current");
  tcs_test::WriteFile(first, "backup 0");
  tcs_test::WriteFile(dir.File("timeline.001.spc"), "backup 1");
  tcs_test::OpenedSpace space(file.c_str());
  auto count = NewCommand(TCSCMD_GET, 0, TCSSUB_BACKUP);
  EXPECT_EQ(tcsSetMode(space.get(), count.get()), 2u);
  // Backup 1 (file 000) becomes the space's file; 001 moves down.
  auto restore = NewCommand(TCSCMD_SET, 0, TCSSUB_BACKUP);
  restore->position = 1;
  // The reply text holds what the host left there: the name ends itself.
  std::memset(TcsCmdReplyText(*restore), '#', TCSCMD_REPLY_TEXT_SIZE - 1);
  EXPECT_EQ(tcsSetMode(space.get(), restore.get()), 0xFFFFFFFFu);
  EXPECT_EQ(restore->position, 0xFFFFFFFFu);
  EXPECT_EQ(std::string(TcsCmdReplyText(*restore)), first);
  EXPECT_EQ(tcs_test::ReadFile(file), "backup 0");
  EXPECT_EQ(tcs_test::ReadFile(first), "backup 1");
  EXPECT_EQ(tcsSetMode(space.get(), count.get()), 1u);
}

}  // namespace
