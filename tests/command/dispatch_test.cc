// tcsSetMode's checks, in their order, and its routing by command and
// sub-command.
#include <gtest/gtest.h>

#include <cstring>
#include <set>
#include <string>
#include <vector>

#include "support/command_record.h"
#include "support/log_capture.h"
#include "support/test_clips.h"
#include "tcs.h"

namespace {

using tcs_test::NewCommand;
using Lines = std::vector<std::string>;

bool SameBytes(const TCSCMD& a, const TCSCMD& b) { return std::memcmp(&a, &b, sizeof a) == 0; }

TEST(Dispatch, ChecksRecordThenSpaceThenType) {
  tcs_test::OpenedSpace space;
  tcs_test::LogCapture log;
  EXPECT_EQ(tcsSetMode(space.get(), nullptr), 0xA8080004u);
  EXPECT_EQ(tcsSetMode(nullptr, nullptr), 0xA8080004u);
  EXPECT_EQ(log.Lines(), (Lines{"TCSpace(0xA8080004)", "TCSpace(0xA8080004)"}));
  log.Clear();

  // A null space answers before the type is looked at, and logs nothing.
  auto record = NewCommand(TCSCMD_DELETE, TCSF_POS | TCSF_IN | TCSF_OUT);
  record->size = 0;
  for (uint32_t type : {TCSCMD_TYPE, 0xFA250201u}) {
    record->type = type;
    EXPECT_EQ(tcsSetMode(nullptr, record.get()), 0xFFFFFFFFu);
    EXPECT_EQ(record->position, 0xFFFFFFFFu);
    EXPECT_EQ(record->size, 0u);
  }
  EXPECT_EQ(log.Lines(), Lines{});

  // The wrong type: nothing else of the record is read or written.
  const TCSCMD before = *record;
  EXPECT_EQ(tcsSetMode(space.get(), record.get()), 0xA8087004u);
  EXPECT_TRUE(SameBytes(*record, before));
  EXPECT_EQ(log.Lines(), Lines{"TCSpace(0xA8087004)"});
}

// Below 22 the host's ignored commands return 0 with the record untouched;
// every other command that is neither an edit nor a get or set passes the
// edit path, which writes a size of 0 back as 56. Neither edits.
TEST(Dispatch, IgnoredAndUnknownCommandsChangeNothing) {
  const std::set<uint32_t> ignored = {0, 1, 2, 5, 6, 12, 13, 17, 18, 19, 21};
  std::vector<uint32_t> commands = {22, 23, 30, 1000, 0xFFFFFFFFu};
  for (uint32_t command = 0; command < 22; ++command) {
    const bool edit = command >= TCSCMD_INSERT && command <= TCSCMD_TRIM;
    const bool query = command >= TCSCMD_GET && command <= TCSCMD_GET_ALT;
    if (!edit && !query) commands.push_back(command);
  }
  tcs_test::OpenedSpace space;
  auto clip = tcs_test::MakeClip(100, 100, 1000);
  ASSERT_EQ(tcsAddClip(space.get(), clip.get(), 0), 0u);
  tcs_test::LogCapture log;
  for (uint32_t command : commands) {
    SCOPED_TRACE(command);
    // What would blank the clip under TCSCMD_CLEAR.
    auto record = NewCommand(command, TCSF_POS | TCSF_IN | TCSF_OUT | TCSF_ALL);
    record->size = 0;
    record->videoMask = 1;
    record->outPoint = 1000;
    TCSCMD expected = *record;
    if (ignored.count(command) == 0) expected.size = 56;
    EXPECT_EQ(tcsSetMode(space.get(), record.get()), 0u);
    EXPECT_TRUE(SameBytes(*record, expected)) << "size " << record->size;
    EXPECT_EQ(tcs_test::PlaySpans(*space, 0), (std::vector<tcs_test::PlaySpan>{{100, 100, 1000}}));
  }
  EXPECT_EQ(log.Lines(), Lines{});
}

// Sub-commands on an empty space: the end of the walk reads as "none" under
// a get and as not found under a set; unknown sub-commands are "none".
TEST(Dispatch, SubCommandsOnAnEmptySpace) {
  struct {
    uint32_t command, sub, result;
  } const rows[] = {
      {TCSCMD_GET, TCSSUB_NEXT, 0xFFFFFFFFu},      {TCSCMD_GET, TCSSUB_NEXT_EVENT, 0xFFFFFFFFu},
      {TCSCMD_SET, TCSSUB_NEXT, 0x80000001u},      {TCSCMD_SET, TCSSUB_NEXT_EVENT, 0x80000001u},
      {TCSCMD_GET, TCSSUB_PROPERTY, 0x80000001u},  {TCSCMD_SET, TCSSUB_PROPERTY, 0x80000001u},
      {TCSCMD_GET, 95, 0xFFFFFFFFu},               {TCSCMD_SET, 95, 0xFFFFFFFFu},
      {TCSCMD_GET, 0x10005, 0xFFFFFFFFu},          {TCSCMD_SET, 0, 0xFFFFFFFFu},
  };
  tcs_test::OpenedSpace space;
  tcs_test::LogCapture log;
  for (const auto& row : rows) {
    SCOPED_TRACE(testing::Message() << row.command << "/" << row.sub);
    auto record = NewCommand(row.command, 0, row.sub);
    record->position = 5;
    record->outPoint = 0xFFFFFFFFu;
    EXPECT_EQ(tcsSetMode(space.get(), record.get()), row.result);
    const bool walk = row.sub == TCSSUB_NEXT || row.sub == TCSSUB_NEXT_EVENT;
    EXPECT_EQ(record->position, walk ? 0xFFFFFFFFu : 5u);
  }
  EXPECT_EQ(log.Lines(), Lines{});
}

// TCSCMD_GET_ALT is TCSCMD_GET under another number: the same result and the
// same record afterwards, for every sub-command, on twin spaces.
TEST(Dispatch, GetAltBehavesExactlyAsGet) {
  tcs_test::FakeClock clock(50000);
  for (uint32_t sub : {TCSSUB_NEXT, TCSSUB_NEXT_EVENT, TCSSUB_PROPERTY, TCSSUB_CHANGESTAMP,
                       TCSSUB_BACKUP, 95u}) {
    for (uint32_t selector : {1u, 4u, 16u}) {
      SCOPED_TRACE(testing::Message() << sub << " selector " << selector);
      tcs_test::OpenedSpace spaces[2];
      std::unique_ptr<TCSCMD> records[2];
      uint32_t results[2];
      for (int i = 0; i < 2; ++i) {
        auto clip = tcs_test::MakeClip(100, 50, 7, "a");
        clip->SetComment("remark");
        ASSERT_EQ(tcsAddClip(spaces[i].get(), clip.get(), 0), 0u);
        records[i] = NewCommand(i == 0 ? TCSCMD_GET : TCSCMD_GET_ALT, 0, sub);
        records[i]->selector = selector;
        records[i]->outPoint = 0xFFFFFFFFu;
        results[i] = tcsSetMode(spaces[i].get(), records[i].get());
      }
      EXPECT_EQ(results[0], results[1]);
      records[1]->command = TCSCMD_GET;
      EXPECT_TRUE(SameBytes(*records[0], *records[1]));
    }
  }
}

// A found event reads the same under a get and a set.
TEST(Dispatch, WalkStepsFindTheSameEventUnderGetAndSet) {
  for (uint32_t command : {TCSCMD_GET, TCSCMD_SET}) {
    tcs_test::OpenedSpace space;
    auto clip = tcs_test::MakeClip(100, 50, 7, "a");
    ASSERT_EQ(tcsAddClip(space.get(), clip.get(), 0), 0u);
    auto walk = NewCommand(command, 0, TCSSUB_NEXT);
    walk->outPoint = 0xFFFFFFFFu;
    EXPECT_EQ(tcsSetMode(space.get(), walk.get()), 100u);
    EXPECT_EQ(walk->videoMask, 1u);
    EXPECT_STREQ(walk->text, "a");
  }
}

}  // namespace
