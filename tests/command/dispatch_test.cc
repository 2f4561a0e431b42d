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

using tcs_test::LogCapture;
using tcs_test::NewCommand;
using tcs_test::PlaySpan;
using tcs_test::PlaySpans;

using Lines = std::vector<std::string>;

bool SameBytes(const TCSCMD& a, const TCSCMD& b) { return std::memcmp(&a, &b, sizeof a) == 0; }

TEST(Dispatch, ChecksRecordThenSpaceThenType) {
  tcs_test::OpenedSpace space;
  LogCapture log;

  // A null record, whatever the space.
  EXPECT_EQ(tcsSetMode(space.get(), nullptr), 0xA8080004u);
  EXPECT_EQ(tcsSetMode(nullptr, nullptr), 0xA8080004u);
  EXPECT_EQ(log.Lines(), (Lines{"TCSpace(0xA8080004)", "TCSpace(0xA8080004)"}));
  log.Clear();

  // A null space answers before the type is looked at, and logs nothing.
  for (uint32_t type : {TCSCMD_TYPE, 0xFA250201u}) {
    auto record = NewCommand(TCSCMD_DELETE);
    record->type = type;
    record->size = 0;
    EXPECT_EQ(tcsSetMode(nullptr, record.get()), 0xFFFFFFFFu);
    EXPECT_EQ(record->position, 0xFFFFFFFFu);
    EXPECT_EQ(record->size, 0u);
  }
  EXPECT_EQ(log.Lines(), Lines{});

  // The wrong type, before anything reads or writes the rest of the record.
  auto record = NewCommand(TCSCMD_DELETE, TCSF_POS | TCSF_IN | TCSF_OUT);
  record->type = 0xFA250201u;
  record->size = 0;
  const TCSCMD before = *record;
  EXPECT_EQ(tcsSetMode(space.get(), record.get()), 0xA8087004u);
  EXPECT_TRUE(SameBytes(*record, before));
  EXPECT_EQ(log.Lines(), Lines{"TCSpace(0xA8087004)"});
}

// Below 22, the commands the host's control layer sends for other modules
// return 0 untouched; every other command that is not a get or a set goes
// through the edit path, which writes back a size of 0 as 56.
TEST(Dispatch, IgnoredCommandsLeaveTheRecordAndTheSpaceAlone) {
  const std::set<uint32_t> ignored = {0, 1, 2, 5, 6, 12, 13, 17, 18, 19, 21};
  std::vector<uint32_t> commands = {22, 23, 30, 1000, 0xFFFFFFFFu};
  for (uint32_t command = 0; command < 22; ++command) {
    const bool edit = command >= TCSCMD_INSERT && command <= TCSCMD_TRIM;
    const bool query = command >= TCSCMD_GET && command <= TCSCMD_GET_ALT;
    if (!edit && !query) commands.push_back(command);
  }
  tcs_test::NotificationLog notifications;
  tcs_test::OpenedSpace space;
  notifications.Install(space.get());
  auto clip = tcs_test::MakeClip(100, 100, 1000);
  ASSERT_EQ(tcsAddClip(space.get(), clip.get(), 0), 0u);
  const std::vector<PlaySpan> timeline = PlaySpans(*space, 0);
  LogCapture log;

  for (uint32_t command : commands) {
    SCOPED_TRACE(command);
    // Flags and points that would blank the clip under an edit command.
    auto record = NewCommand(command, TCSF_POS | TCSF_IN | TCSF_OUT | TCSF_ALL);
    record->size = 0;
    record->videoMask = 1;
    record->inPoint = 0;
    record->outPoint = 1000;
    const TCSCMD before = *record;
    EXPECT_EQ(tcsSetMode(space.get(), record.get()), 0u);
    TCSCMD expected = before;
    if (ignored.count(command) == 0) expected.size = 56;
    EXPECT_TRUE(SameBytes(*record, expected)) << "size " << record->size;
    EXPECT_EQ(PlaySpans(*space, 0), timeline);
  }
  EXPECT_EQ(log.Lines(), Lines{});
}

TEST(Dispatch, UnknownSubCommandsAnswerNone) {
  tcs_test::OpenedSpace space;
  LogCapture log;
  for (uint32_t command : {TCSCMD_GET, TCSCMD_GET_ALT, TCSCMD_SET}) {
    for (uint32_t sub : {0u, 92u, 95u, 96u, 98u, 0x10005u, 0x10008u}) {
      SCOPED_TRACE(testing::Message() << command << "/" << sub);
      auto record = NewCommand(command, 0, sub);
      record->position = 123;
      const TCSCMD before = *record;
      EXPECT_EQ(tcsSetMode(space.get(), record.get()), 0xFFFFFFFFu);
      EXPECT_TRUE(SameBytes(*record, before));
    }
  }
  EXPECT_EQ(log.Lines(), Lines{});
}

// The end of the walk reads as "none" under a get and as not found under a
// set; a found event reads the same under both.
TEST(Dispatch, EndOfTheWalkDependsOnGetOrSet) {
  struct Case {
    uint32_t command;
    uint32_t sub;
    uint32_t end;
  } const cases[] = {
      {TCSCMD_GET, TCSSUB_NEXT, 0xFFFFFFFFu},
      {TCSCMD_GET_ALT, TCSSUB_NEXT, 0xFFFFFFFFu},
      {TCSCMD_GET, TCSSUB_NEXT_EVENT, 0xFFFFFFFFu},
      {TCSCMD_SET, TCSSUB_NEXT, 0x80000001u},
      {TCSCMD_SET, TCSSUB_NEXT_EVENT, 0x80000001u},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << c.command << "/" << c.sub);
    tcs_test::OpenedSpace space;
    auto walk = NewCommand(c.command, 0, c.sub);
    walk->outPoint = 0xFFFFFFFFu;
    EXPECT_EQ(tcsSetMode(space.get(), walk.get()), c.end);
    EXPECT_EQ(walk->position, 0xFFFFFFFFu);

    auto clip = tcs_test::MakeClip(100, 50, 7, "a");
    ASSERT_EQ(tcsAddClip(space.get(), clip.get(), 0), 0u);
    walk = NewCommand(c.command, 0, c.sub);
    walk->outPoint = 0xFFFFFFFFu;
    EXPECT_EQ(tcsSetMode(space.get(), walk.get()), 100u);
    EXPECT_EQ(walk->position, 100u);
    EXPECT_EQ(walk->videoMask, 1u);
    EXPECT_STREQ(walk->text, "a");
    EXPECT_EQ(tcsSetMode(space.get(), walk.get()), c.end);
  }
}

// TCSCMD_GET_ALT is TCSCMD_GET under another number: the same result and the
// same record afterwards, for every sub-command, on twin spaces.
TEST(Dispatch, GetAltBehavesExactlyAsGet) {
  tcs_test::FakeClock clock(50000);
  const uint32_t subs[] = {TCSSUB_NEXT, TCSSUB_NEXT_EVENT, TCSSUB_PROPERTY, TCSSUB_CHANGESTAMP,
                           TCSSUB_BACKUP, 95};
  for (uint32_t sub : subs) {
    for (uint32_t selector : {1u, 4u, 16u}) {
      SCOPED_TRACE(testing::Message() << sub << " selector " << selector);
      tcs_test::OpenedSpace get_space, alt_space;
      std::unique_ptr<TCSCMD> records[2];
      uint32_t results[2];
      CTimeCodeSpace* spaces[2] = {get_space.get(), alt_space.get()};
      const uint32_t commands[2] = {TCSCMD_GET, TCSCMD_GET_ALT};
      for (int i = 0; i < 2; ++i) {
        auto clip = tcs_test::MakeClip(100, 50, 7, "a");
        clip->SetComment("remark");
        ASSERT_EQ(tcsAddClip(spaces[i], clip.get(), 0), 0u);
        records[i] = NewCommand(commands[i], 0, sub);
        records[i]->selector = selector;
        records[i]->position = 120;
        records[i]->outPoint = 0xFFFFFFFFu;
        results[i] = tcsSetMode(spaces[i], records[i].get());
      }
      EXPECT_EQ(results[0], results[1]);
      records[1]->command = TCSCMD_GET;
      EXPECT_TRUE(SameBytes(*records[0], *records[1]));
      EXPECT_EQ(get_space->changeStamp.load(), alt_space->changeStamp.load());
    }
  }
}

}  // namespace
