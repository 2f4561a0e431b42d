// tcsFindClip: the record handed back, the current clip it leaves, the retry
// from timecode 0 under bit 0 of the mode.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "command/walk_test_util.h"
#include "support/log_capture.h"

namespace {

using tcs_test::Lay;

constexpr uint32_t kNotFound = 0x80000001u;

TEST(ClipSearch, NullSpaceIsLoggedAndLeavesTheOutputAlone) {
  tcs_test::LogCapture log;
  CClip sentinel;
  CClip* out = &sentinel;
  EXPECT_EQ(tcsFindClip(nullptr, 24, 0, &out, 0), kNotFound);
  EXPECT_EQ(out, &sentinel);
  EXPECT_EQ(log.Lines(), std::vector<std::string>{"TCSpace(0xA8080004)"});
}

// A clip [0, 10) whose source-frame result at 5 is exactly the not-found value.
TEST(ClipSearch, FindingSetsTheCurrentClipAndNotFindingClearsIt) {
  tcs_test::OpenedSpace space;
  Lay(space.get(), {{0, 0, 10, 0x7FFFFFFC, "a"}, {32, 20, 10, 0, "b"}});
  CClip* const a = space->lookups[0]->begin()->clip;
  struct Case {
    uint32_t mode, t, channel, result;
    bool found;
  };
  const Case cases[] = {
      {0x10, 5, 0, 0, true},
      {0x70, 5, 0, kNotFound, false},   // a computed 0x80000001 reads as not found
      {0x10, 5, 96, 0, true},           // 96 and above: channel 0
      {0x71, 5, 0, 0x7FFFFFFC, true},   // bit 0: searched again from 0
      {0x18, 30, 0, kNotFound, false},
      {0x10, 5, 1, kNotFound, false},   // no lookup on channel 1
      {0x19, 30, 0, 0, true},           // the lookup's own nearest search
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << std::hex << c.mode << " at " << c.t << " ch " << c.channel);
    space->clipActive = c.found ? 0 : 1;
    CClip sentinel;
    CClip* out = &sentinel;
    EXPECT_EQ(tcsFindClip(space.get(), c.mode, c.t, &out, c.channel), c.result);
    EXPECT_EQ(out, c.found ? a : nullptr);
    EXPECT_EQ(tcsClipActive(space.get()), c.found ? 1u : 0u);
    if (c.found) {
      EXPECT_EQ(space->currentPlayClip.clip, a);
    }
  }
  // A play clip without a record is found, but there is no current clip.
  CPlayClip bare;
  bare.start = 40;
  bare.length = 5;
  space->lookups[32]->playClips.insert(bare);
  CClip* out = a;
  EXPECT_EQ(tcsFindClip(space.get(), 0x10, 42, &out, 32), 40u);
  EXPECT_EQ(out, nullptr);
  EXPECT_EQ(tcsClipActive(space.get()), 0u);
}

TEST(ClipSearch, TheClipFoundCanBeReadAndReplacedThroughTheCurrentClip) {
  tcs_test::OpenedSpace space;
  Lay(space.get(), {{2, 0, 100, 1000, "old"}, {2, 100, 50, 0, "next"}});
  CClip* found = nullptr;
  ASSERT_EQ(tcsFindClip(space.get(), 0x10, 30, &found, 2), 0u);
  CClip copy;
  ASSERT_EQ(tcsGetCurClip(space.get(), &copy), 0u);
  EXPECT_EQ(copy.sourceIn, 1000u);
  EXPECT_STREQ(copy.name, "old");
  copy.sourceIn = 5000;
  copy.sourceOut = 5100;
  copy.SetName("new");
  ASSERT_EQ(tcsSetCurClip(space.get(), &copy), 0u);
  CClip* playing = nullptr;
  EXPECT_EQ(tcsTranslate(space.get(), 0, 30, &playing, 2), 5030u);
  ASSERT_NE(playing, nullptr);
  EXPECT_NE(playing, found);
  EXPECT_STREQ(playing->name, "new");
  EXPECT_EQ(tcsTranslate(space.get(), 0, 110, &playing, 2), 10u);
}

}  // namespace
