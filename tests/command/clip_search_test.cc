// tcsFindClip: the clip handed back, the current clip it leaves behind, the
// retry from timecode 0 under bit 0 of the mode; the current clip's round
// trip through tcsGetCurClip and tcsSetCurClip.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/log_capture.h"
#include "support/test_clips.h"
#include "tcs.h"

namespace {

constexpr uint32_t kNotFound = 0x80000001u;

// Clip a at [0, 10) on channel 0 plays source frames from 0x7FFFFFFC, so its
// source frame at 5 is exactly the not-found answer.
TEST(ClipSearch, FindingSetsTheCurrentClipWhichCanBeReplaced) {
  tcs_test::OpenedSpace space;
  ASSERT_EQ(tcsAddClip(space.get(), tcs_test::MakeClip(0, 10, 0x7FFFFFFC, "a").get(), 0), 0u);
  CClip* const a = space->lookups[0]->begin()->clip;
  const uint32_t cases[][4] = {  // mode, timecode, channel, answer
      {0x10, 5, 0, 0},
      {0x70, 5, 0, kNotFound},
      {0x71, 5, 0, 0x7FFFFFFC},  // bit 0: searched again from 0
      {0x10, 5, 1, kNotFound},   // no lookup on channel 1
  };
  for (const auto& [mode, t, channel, answer] : cases) {
    SCOPED_TRACE(testing::Message() << std::hex << "mode 0x" << mode << " ch " << channel);
    const bool found = answer != kNotFound;
    space->clipActive = found ? 0 : 1;
    CClip* out = nullptr;
    EXPECT_EQ(tcsFindClip(space.get(), mode, t, &out, channel), answer);
    EXPECT_EQ(out, found ? a : nullptr);
    EXPECT_EQ(tcsClipActive(space.get()), found ? 1u : 0u);
  }

  CClip* out = nullptr;
  ASSERT_EQ(tcsFindClip(space.get(), 0x10, 5, &out, 0), 0u);
  CClip copy;
  ASSERT_EQ(tcsGetCurClip(space.get(), &copy), 0u);
  EXPECT_EQ(copy.sourceIn, 0x7FFFFFFCu);
  EXPECT_STREQ(copy.name, "a");
  copy.sourceIn = 5000;
  copy.sourceOut = 5010;
  copy.SetName("new");
  ASSERT_EQ(tcsSetCurClip(space.get(), &copy), 0u);
  EXPECT_EQ(tcsTranslate(space.get(), 0, 5, &out, 0), 5005u);
  ASSERT_NE(out, nullptr);
  EXPECT_STREQ(out->name, "new");

  tcs_test::LogCapture log;  // a null space: logged, the output left alone
  EXPECT_EQ(tcsFindClip(nullptr, 24, 0, &out, 0), kNotFound);
  EXPECT_STREQ(out->name, "new");
  EXPECT_EQ(log.Lines(), std::vector<std::string>{"TCSpace(0xA8080004)"});
}

}  // namespace
