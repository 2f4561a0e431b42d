// Timecode text of the tcs tool: every frame count formats to a timecode
// that parses back to it, at plain and drop-frame rates, and drop-frame
// counting agrees with a brute-force count of the labels it skips.
#include <gtest/gtest.h>

#include <string>

#include "channels.h"
#include "support/label_clock.h"
#include "timecode_text.h"

namespace tcs::cli {
namespace {

// Walks the labels one frame at a time, skipping the dropped ones, and
// checks format and parse against that walk for the first 11 minutes.
TEST(TimecodeTextTest, RoundTripsAgainstALabelWalk) {
  for (const FrameRate rate : {FrameRate{25, false}, FrameRate{30, false}, FrameRate{30, true},
                               FrameRate{60, true}, FrameRate{24, false}}) {
    tcs_test::LabelClock clock{rate.fps, rate.dropFrame ? rate.fps / 15 : 0};
    for (uint32_t frame = 0; frame < rate.fps * 60 * 11; ++frame, clock.Tick()) {
      ASSERT_EQ(FormatTimecode(frame, rate), clock.Label()) << frame;
      std::string error;
      ASSERT_EQ(ParseTimecode(clock.Label(), rate, &error), frame) << clock.Label() << error;
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
  for (const char* rate : {"0", "121", "25df", "29.98", "x"}) EXPECT_FALSE(ParseFrameRate(rate)) << rate;
  EXPECT_TRUE(ParseFrameRate("29.97")->dropFrame);
  EXPECT_EQ(ParseFrameRate("60df")->fps, 60u);
}

}  // namespace
}  // namespace tcs::cli
