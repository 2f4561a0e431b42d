// Clip properties read and written through TCSSUB_PROPERTY.
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "support/command_record.h"
#include "support/test_clips.h"
#include "tcs.h"

namespace {

// Channel 0 holds a clip at [100, 150) with texts and an effect.
struct PropertySpace {
  PropertySpace() {
    auto clip = tcs_test::MakeClip(100, 50, 7, "long name");
    clip->SetComment("a remark");
    clip->SetReel("reel 9");
    clip->effectCode = 5;
    clip->effectDuration = 30;
    std::strcpy(clip->effectText, "0123456789");
    EXPECT_EQ(tcsAddClip(space.get(), clip.get(), 0), 0u);
  }
  // A property command whose reply area holds 'U's.
  std::unique_ptr<TCSCMD> Command(uint32_t command, uint32_t selector, uint32_t position) {
    auto record = tcs_test::NewCommand(command, 0x1, TCSSUB_PROPERTY);
    std::memset(TcsCmdReplyText(*record), 'U', TCSCMD_REPLY_TEXT_SIZE);
    record->selector = selector;
    record->position = position;
    return record;
  }
  tcs_test::FakeClock clock{1000};
  tcs_test::OpenedSpace space;
};

// The text of the clip covering position; the effect text reply is bounded
// by `size` alone, the others are not.
TEST(PropertyCommands, Get) {
  PropertySpace s;
  const struct {
    uint32_t selector, position, result, size;
    std::string reply;  // from offset 76, up to the first byte left alone
  } rows[] = {
      {TCSPROP_COMMENT, 149, 149, 56, std::string("a remark", 9)},
      {TCSPROP_REEL, 100, 100, 56, std::string("reel 9", 7)},
      {TCSPROP_NAME, 120, 120, 56, std::string("long name", 10)},
      {TCSPROP_EFFECT, 100, 100, 80, "0123"},  // exactly 4 bytes, no zero
      {TCSPROP_EFFECT_ALT, 100, 100, 4188, std::string("0123456789", 11)},
      {3, 120, 120, 4188, ""},                     // an unknown selector: no reply
      {TCSPROP_NAME, 150, 0x80000001u, 4188, ""},  // a gap: no reply
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.selector);
    auto record = s.Command(TCSCMD_GET, row.selector, row.position);
    record->size = row.size;
    EXPECT_EQ(tcsSetMode(s.space.get(), record.get()), row.result);
    const bool effect = row.selector == TCSPROP_EFFECT || row.selector == TCSPROP_EFFECT_ALT;
    EXPECT_EQ(record->position, row.reply.empty() ? row.position : 1u);
    EXPECT_EQ(record->flags, row.reply.empty() ? 1u : effect ? 0x2501u : 0x2001u);
    EXPECT_EQ(record->inPoint + record->outPoint, effect ? 5u + 30u : 0u);  // code, duration
    EXPECT_EQ(std::string(TcsCmdReplyText(*record), row.reply.size() + 1), row.reply + 'U');
  }
}

// Comment, reel and effect are set and stamp the space; the name is not set.
TEST(PropertyCommands, Set) {
  const struct {
    uint32_t selector;
    const char *comment, *reel, *effect;
  } rows[] = {
      {TCSPROP_COMMENT, "new", "reel 9", "0123456789"},
      {TCSPROP_REEL, "a remark", "new", "0123456789"},
      {TCSPROP_EFFECT, "a remark", "reel 9", "new"},
      {TCSPROP_NAME, "a remark", "reel 9", "0123456789"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.selector);
    PropertySpace s;
    s.clock.Set(777);
    auto record = s.Command(TCSCMD_SET, row.selector, 120);
    std::strcpy(record->longText, "new");
    EXPECT_EQ(tcsSetMode(s.space.get(), record.get()), 120u);
    const bool set = row.selector != TCSPROP_NAME;
    const CClip* clip = s.space->firstClip;
    EXPECT_EQ(record->position, set ? 1u : 120u);
    EXPECT_STREQ(clip->comment, row.comment);
    EXPECT_STREQ(clip->reel, row.reel);
    EXPECT_STREQ(clip->name, "long name");
    EXPECT_STREQ(clip->effectText, row.effect);
    EXPECT_EQ(s.space->changeStamp.load(), set ? 777u : 1000u);
  }
}

}  // namespace
