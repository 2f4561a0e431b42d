// Timecodes as people type them, and frame rates: every frame count formats
// to a timecode that parses back to it, at plain and drop-frame rates, and
// drop-frame counting agrees with a brute-force count of the labels it skips.
#include <gtest/gtest.h>

#include <string>

#include "record/timecode.h"
#include "support/label_clock.h"
#include "timecode/timecode.h"

namespace tcs::timecode {
namespace {

std::optional<uint32_t> ParseTimecode(std::string_view text, FrameRate rate, std::string* error) {
  return timecode::ParseTimecode(text, rate, kTimelineEnd, error);
}
std::string FormatTimecode(uint32_t frames, FrameRate rate) { return TimecodeString(frames, rate); }

// Walks the labels one frame at a time, skipping the dropped ones, and
// checks format and parse against that walk for the first 11 minutes.
TEST(TimecodeTextTest, RoundTripsAgainstALabelWalk) {
  for (const FrameRate rate : {MakeFrameRate(25, false), MakeFrameRate(30, false),
                               MakeFrameRate(30, true), MakeFrameRate(60, true),
                               MakeFrameRate(24, false)}) {
    tcs_test::LabelClock clock{rate.fps, rate.dropFrame ? rate.fps / 15 : 0};
    for (uint32_t frame = 0; frame < rate.fps * 60 * 11; ++frame, clock.Tick()) {
      ASSERT_EQ(FormatTimecode(frame, rate), clock.Label()) << frame;
      std::string error;
      ASSERT_EQ(ParseTimecode(clock.Label(), rate, &error), frame) << clock.Label() << error;
      // At a drop-frame rate a ':' before the frames reads the same label.
      if (rate.dropFrame && frame % 97 == 0) {
        std::string colon = clock.Label();
        colon[colon.size() - 3] = ':';
        ASSERT_EQ(ParseTimecode(colon, rate, &error), frame) << colon << error;
      }
    }
  }
  // Past 99 hours the hours take more digits rather than wrapping.
  EXPECT_EQ(FormatTimecode(10692000, {30, false}), "99:00:00:00");
  EXPECT_EQ(FormatTimecode(0xFFFFFFFFu, {30, false}), "39768:12:56:15");
}

TEST(TimecodeTextTest, RefusesWhatIsNotATimecode) {
  std::string error;
  for (const char* text : {"", "1:2:3", "01:00:00:30", "01:60:00:00", "01:00:60:00", "1:0:0:0:0",
                           "01;00:00:00", "00:01:00;00", "00:01:00;01", "-5", "10692002",
                           "1000:00:00:00", "01:00:00:0x", "x"}) {
    error.clear();
    EXPECT_FALSE(ParseTimecode(text, {30, false}, &error).has_value()) << text;
    EXPECT_FALSE(error.empty()) << text;
  }
  EXPECT_FALSE(ParseTimecode("00:00:01;00", {25, false}, &error).has_value());
  EXPECT_EQ(ParseTimecode("00:10:00;00", {30, false}, &error), 17982u);  // ';' asks for drop
  EXPECT_EQ(ParseTimecode("10692001", {30, false}, &error), 10692001u);
  // Hours past 99 at 24 and 25 frames per second lie on the timeline.
  EXPECT_EQ(ParseTimecode("123:00:00:00", {24, false}, &error), 123u * 3600 * 24);
  for (const char* rate : {"0", "121", "25df", "29.98", "x", "23.976df", ""}) {
    EXPECT_FALSE(ParseFrameRate(rate)) << rate;
  }
  struct Spelling {
    const char* text;
    FrameRate rate;
    const char* shown;
  };
  for (const Spelling& s : {Spelling{"23.976", {24, false, true}, "23.976 fps"},
                            Spelling{"23.98", {24, false, true}, "23.976 fps"},
                            Spelling{"29.97", {30, true, true}, "29.97 fps drop-frame"},
                            Spelling{"29.97df", {30, true, true}, "29.97 fps drop-frame"},
                            Spelling{"59.94", {60, true, true}, "59.94 fps drop-frame"},
                            Spelling{"59.94df", {60, true, true}, "59.94 fps drop-frame"},
                            Spelling{"60df", {60, true, true}, "59.94 fps drop-frame"},
                            Spelling{"48", {48, false, false}, "48 fps"},
                            Spelling{"120", {120, false, false}, "120 fps"}}) {
    EXPECT_EQ(ParseFrameRate(s.text), s.rate) << s.text;
    EXPECT_EQ(FrameRateText(s.rate), s.shown) << s.text;
  }
}

}  // namespace
}  // namespace tcs::timecode
