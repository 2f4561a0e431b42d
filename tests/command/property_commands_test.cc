// Clip properties read and written through TCSSUB_PROPERTY.
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "support/command_record.h"
#include "support/test_clips.h"
#include "tcs.h"

namespace {

constexpr unsigned char kUntouched = 0x5A;

// Channel 0 holds a clip at [100, 150) with texts and an effect; channel 1
// holds one at [300, 350).
struct PropertySpace {
  explicit PropertySpace(unsigned int now = 1000) : clock(now) {
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
  // A property command with its reply area filled with kUntouched.
  std::unique_ptr<TCSCMD> Command(uint32_t command, uint32_t selector, uint32_t position) {
    auto record = tcs_test::NewCommand(command, 0x1, TCSSUB_PROPERTY);
    std::memset(TcsCmdReplyText(*record), kUntouched, TCSCMD_REPLY_TEXT_SIZE);
    record->selector = selector;
    record->position = position;
    return record;
  }
  tcs_test::FakeClock clock;
  tcs_test::OpenedSpace space;
  CClip* listed;  // the record of [100, 150)
};

bool SameBytes(const TCSCMD& a, const TCSCMD& b) { return std::memcmp(&a, &b, sizeof a) == 0; }

TEST(PropertyCommands, GetReadsTheSelectedTextOfTheClipCoveringPosition) {
  PropertySpace s;
  struct {
    uint32_t selector, position, result;
    const char* text;  // null: the record stays as it was
  } const rows[] = {
      {TCSPROP_COMMENT, 149, 149, "a remark"}, {TCSPROP_REEL, 100, 100, "reel 9"},
      {TCSPROP_NAME, 120, 120, "long name"},   {0, 120, 120, nullptr},
      {3, 120, 120, nullptr},                  {32, 120, 120, nullptr},
      // A gap of channel 0, and a clip on channel 1 only.
      {TCSPROP_NAME, 150, 0x80000001u, nullptr}, {TCSPROP_NAME, 320, 0x80000001u, nullptr},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(testing::Message() << row.selector << " at " << row.position);
    auto record = s.Command(TCSCMD_GET, row.selector, row.position);
    const TCSCMD before = *record;
    EXPECT_EQ(tcsSetMode(s.space.get(), record.get()), row.result);
    if (row.text == nullptr) {
      EXPECT_TRUE(SameBytes(*record, before));
      continue;
    }
    EXPECT_EQ(record->position, 1u);
    EXPECT_EQ(record->flags, 0x2001u);
    EXPECT_EQ(std::string(record->text), row.text);
  }
}

// The effect text reply is bounded by the record's declared size alone.
TEST(PropertyCommands, EffectTextReplyStopsAtTheDeclaredSize) {
  PropertySpace s;
  const std::string text("0123456789", 11);  // with its zero
  struct {
    uint32_t size;
    size_t written;  // bytes from offset 76
  } const rows[] = {{0, 0},   {56, 0},    {76, 0},    {77, 1},
                    {80, 4},  {86, 10},   {87, 11},   {4188, 11}, {0xFFFFFFFFu, 11}};
  for (const auto& row : rows) {
    for (uint32_t selector : {TCSPROP_EFFECT, TCSPROP_EFFECT_ALT}) {
      SCOPED_TRACE(testing::Message() << "size " << row.size << " selector " << selector);
      auto record = s.Command(TCSCMD_GET, selector, 100);
      record->size = row.size;
      EXPECT_EQ(tcsSetMode(s.space.get(), record.get()), 100u);
      EXPECT_EQ(record->inPoint, 5u);
      EXPECT_EQ(record->outPoint, 30u);
      EXPECT_EQ(record->flags, 0x2501u);
      EXPECT_EQ(record->position, 1u);
      const std::string reply(TcsCmdReplyText(*record), TCSCMD_REPLY_TEXT_SIZE);
      EXPECT_EQ(reply, text.substr(0, row.written) +
                           std::string(TCSCMD_REPLY_TEXT_SIZE - row.written, kUntouched));
    }
  }
}

// Comment, reel and effect are set and stamp the space; the name and other
// selectors set nothing and leave the record and the stamps alone.
TEST(PropertyCommands, SetWritesTheClipAndStampsTheSpace) {
  struct {
    uint32_t selector;
    const char *comment, *reel, *effect;
    uint32_t position;  // afterwards
  } const rows[] = {
      {TCSPROP_COMMENT, "new", "reel 9", "0123456789", 1},
      {TCSPROP_REEL, "a remark", "new", "0123456789", 1},
      {TCSPROP_EFFECT, "a remark", "reel 9", "new", 1},
      {TCSPROP_EFFECT_ALT, "a remark", "reel 9", "new", 1},
      {TCSPROP_NAME, "a remark", "reel 9", "0123456789", 120},
      {0, "a remark", "reel 9", "0123456789", 120},
      {32, "a remark", "reel 9", "0123456789", 120},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.selector);
    PropertySpace s(1000);
    s.clock.Set(777);
    auto record = s.Command(TCSCMD_SET, row.selector, 120);
    record->inPoint = 47;
    record->outPoint = 12;
    std::strcpy(record->longText, "new");
    EXPECT_EQ(tcsSetMode(s.space.get(), record.get()), 120u);
    EXPECT_EQ(record->position, row.position);
    EXPECT_STREQ(s.listed->comment, row.comment);
    EXPECT_STREQ(s.listed->reel, row.reel);
    EXPECT_STREQ(s.listed->name, "long name");
    EXPECT_STREQ(s.listed->effectText, row.effect);
    const bool set = row.position == 1;
    EXPECT_EQ(s.listed->effectCode, std::strcmp(row.effect, "new") == 0 ? 47u : 5u);
    EXPECT_EQ(s.space->changeStamp.load(), set ? 777u : 1000u);
    EXPECT_EQ(s.space->checkStamp.load(), set ? 777u : 1000u);
  }
}

// longText as the host may leave it: with no zero in the record (ASan
// checks that nothing beyond the record is read), or longer than an effect
// text, which is then cut in the record itself.
TEST(PropertyCommands, SetFromOverlongLongText) {
  PropertySpace s;
  auto record = s.Command(TCSCMD_SET, TCSPROP_COMMENT, 100);
  std::memset(record->longText, 'x', sizeof record->longText);
  EXPECT_EQ(tcsSetMode(s.space.get(), record.get()), 100u);
  EXPECT_EQ(std::string(s.listed->comment), std::string(sizeof record->longText, 'x'));

  record = s.Command(TCSCMD_SET, TCSPROP_EFFECT, 100);
  record->inPoint = 1;
  record->outPoint = 0xFFFFFFFFu;  // keeps the duration
  std::memset(record->longText, 'w', 4100);
  record->longText[4100] = '\0';
  EXPECT_EQ(tcsSetMode(s.space.get(), record.get()), 100u);
  EXPECT_EQ(record->longText[4095], '\0');
  EXPECT_EQ(std::string(s.listed->effectText), std::string(4095, 'w'));
  EXPECT_EQ(s.listed->effectDuration, 30u);
}

}  // namespace
