// Clip properties read and written through TCSSUB_PROPERTY.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "support/command_record.h"
#include "support/log_capture.h"
#include "support/test_clips.h"
#include "tcs.h"

namespace {

using tcs_test::NewCommand;

constexpr uint32_t kNotFound = 0x80000001u;
constexpr unsigned char kUntouched = 0x5A;

// One clip on channel 0 at [100, 150), named, with a comment, a reel and an
// effect, and one on channel 1 only at [300, 350).
struct PropertySpace {
  PropertySpace() {
    auto clip = tcs_test::MakeClip(100, 50, 7, "long name");
    clip->SetComment("a remark");
    clip->SetReel("reel 9");
    clip->effectCode = 5;
    clip->effectDuration = 30;
    std::strcpy(clip->effectText, "0123456789");
    EXPECT_EQ(tcsAddClip(space.get(), clip.get(), 0), 0u);
    auto other = tcs_test::MakeClip(300, 50, 0, "elsewhere");
    EXPECT_EQ(tcsAddClip(space.get(), other.get(), 1), 0u);
    listed = space->firstClip;
  }
  tcs_test::OpenedSpace space;
  CClip* listed;  // the record of [100, 150)
};

std::unique_ptr<TCSCMD> PropertyCommand(uint32_t command, uint32_t selector, uint32_t position) {
  auto record = NewCommand(command, 0, TCSSUB_PROPERTY);
  std::memset(TcsCmdReplyText(*record), kUntouched, TCSCMD_REPLY_TEXT_SIZE);
  record->selector = selector;
  record->position = position;
  record->flags = 0x1;
  return record;
}

bool SameBytes(const TCSCMD& a, const TCSCMD& b) { return std::memcmp(&a, &b, sizeof a) == 0; }

TEST(PropertyCommands, NoClipAtThePositionOnChannelZero) {
  PropertySpace s;
  // 200 is a gap of channel 0; 320 is covered on channel 1 only.
  for (uint32_t command : {TCSCMD_GET, TCSCMD_SET}) {
    for (uint32_t position : {99u, 150u, 200u, 320u}) {
      SCOPED_TRACE(testing::Message() << command << " at " << position);
      auto record = PropertyCommand(command, TCSPROP_COMMENT, position);
      const TCSCMD before = *record;
      EXPECT_EQ(tcsSetMode(s.space.get(), record.get()), kNotFound);
      EXPECT_TRUE(SameBytes(*record, before));
    }
  }
  EXPECT_STREQ(s.listed->comment, "a remark");
}

TEST(PropertyCommands, GetReadsTheSelectedTextOfTheCoveringClip) {
  PropertySpace s;
  struct {
    uint32_t selector;
    const char* text;  // null: the selector reads nothing
  } const rows[] = {
      {TCSPROP_COMMENT, "a remark"}, {TCSPROP_REEL, "reel 9"}, {TCSPROP_NAME, "long name"},
      {0, nullptr}, {3, nullptr}, {5, nullptr}, {32, nullptr}, {0xFFFFFFFFu, nullptr},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.selector);
    auto record = PropertyCommand(TCSCMD_GET, row.selector, 149);
    const TCSCMD before = *record;
    EXPECT_EQ(tcsSetMode(s.space.get(), record.get()), 149u);  // the queried timecode
    if (row.text == nullptr) {
      EXPECT_TRUE(SameBytes(*record, before));
      continue;
    }
    EXPECT_EQ(record->position, 1u);
    EXPECT_EQ(record->flags, 0x2001u);
    EXPECT_EQ(std::string(record->text), row.text);
    EXPECT_EQ(record->inPoint, before.inPoint);
  }
}

// The effect text reply is bounded by the record's declared size alone.
TEST(PropertyCommands, EffectTextReplyStopsAtTheDeclaredSize) {
  PropertySpace s;
  const std::string text = "0123456789";
  struct {
    uint32_t size;
    size_t written;  // bytes from offset 76; the text's zero is the 11th
  } const rows[] = {{0, 0}, {56, 0}, {76, 0}, {77, 1}, {80, 4}, {86, 10}, {87, 11},
                    {4188, 11}, {0xFFFFFFFFu, 11}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.size);
    for (uint32_t selector : {TCSPROP_EFFECT, TCSPROP_EFFECT_ALT}) {
      auto record = PropertyCommand(TCSCMD_GET, selector, 100);
      record->size = row.size;
      EXPECT_EQ(tcsSetMode(s.space.get(), record.get()), 100u);
      EXPECT_EQ(record->inPoint, 5u);
      EXPECT_EQ(record->outPoint, 30u);
      EXPECT_EQ(record->flags, 0x2501u);
      EXPECT_EQ(record->position, 1u);
      const auto* reply = reinterpret_cast<const unsigned char*>(TcsCmdReplyText(*record));
      const std::string expected = (text + '\0').substr(0, row.written);
      EXPECT_EQ(std::string(reinterpret_cast<const char*>(reply), row.written), expected);
      for (size_t i = row.written; i < TCSCMD_REPLY_TEXT_SIZE; ++i) {
        ASSERT_EQ(reply[i], kUntouched) << "byte " << 76 + i;
      }
    }
  }
}

TEST(PropertyCommands, SetWritesTheClipAndStampsTheSpace) {
  struct {
    uint32_t selector;
    const char* comment;
    const char* reel;
  } const rows[] = {
      {TCSPROP_COMMENT, "new text", "reel 9"},
      {TCSPROP_REEL, "a remark", "new text"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.selector);
    tcs_test::FakeClock clock(1000);
    PropertySpace s;
    clock.Set(777);
    auto record = PropertyCommand(TCSCMD_SET, row.selector, 120);
    std::strcpy(record->longText, "new text");
    EXPECT_EQ(tcsSetMode(s.space.get(), record.get()), 120u);
    EXPECT_EQ(record->position, 1u);
    EXPECT_STREQ(s.listed->comment, row.comment);
    EXPECT_STREQ(s.listed->reel, row.reel);
    EXPECT_EQ(s.space->changeStamp.load(), 777u);
    EXPECT_EQ(s.space->checkStamp.load(), 777u);
  }
}

// The name has no setter, and unknown selectors set nothing: no stamp, no
// change of the record.
TEST(PropertyCommands, SetWithoutASettablePropertyChangesNothing) {
  for (uint32_t selector : {TCSPROP_NAME, 0u, 3u, 32u}) {
    SCOPED_TRACE(selector);
    tcs_test::FakeClock clock(1000);
    PropertySpace s;
    clock.Set(777);
    auto record = PropertyCommand(TCSCMD_SET, selector, 120);
    std::strcpy(record->longText, "new text");
    const TCSCMD before = *record;
    EXPECT_EQ(tcsSetMode(s.space.get(), record.get()), 120u);
    EXPECT_TRUE(SameBytes(*record, before));
    EXPECT_STREQ(s.listed->name, "long name");
    EXPECT_EQ(s.space->changeStamp.load(), 1000u);
  }
}

// A longText with no zero in the record: the comment ends where the record
// does (ASan checks that nothing beyond it is read).
TEST(PropertyCommands, SetCommentFromAnUnterminatedLongText) {
  PropertySpace s;
  auto record = PropertyCommand(TCSCMD_SET, TCSPROP_COMMENT, 100);
  std::memset(record->longText, 'x', sizeof record->longText);
  EXPECT_EQ(tcsSetMode(s.space.get(), record.get()), 100u);
  EXPECT_EQ(std::string(s.listed->comment), std::string(sizeof record->longText, 'x'));
}

TEST(PropertyCommands, SetEffectOnTheClipsRange) {
  PropertySpace s;
  for (uint32_t selector : {TCSPROP_EFFECT, TCSPROP_EFFECT_ALT}) {
    auto record = PropertyCommand(TCSCMD_SET, selector, 100);
    record->inPoint = 47;
    record->outPoint = 12;
    std::strcpy(record->longText, "my wipe");
    EXPECT_EQ(tcsSetMode(s.space.get(), record.get()), 100u);
    EXPECT_EQ(s.listed->effectCode, 47u);
    EXPECT_EQ(s.listed->effectDuration, 12u);
    EXPECT_STREQ(s.listed->effectText, "my wipe");
    EXPECT_EQ(record->position, 1u);
  }
  // A text longer than an effect text is cut in the record itself.
  auto record = PropertyCommand(TCSCMD_SET, TCSPROP_EFFECT, 100);
  record->inPoint = 1;
  record->outPoint = 0xFFFFFFFFu;
  std::memset(record->longText, 'w', 4100);
  record->longText[4100] = '\0';
  EXPECT_EQ(tcsSetMode(s.space.get(), record.get()), 100u);
  EXPECT_EQ(record->longText[4095], '\0');
  EXPECT_EQ(std::string(s.listed->effectText), std::string(4095, 'w'));
  EXPECT_EQ(s.listed->effectDuration, 12u);  // kept
}

}  // namespace
