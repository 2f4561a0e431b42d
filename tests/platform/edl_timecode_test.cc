// EDL timecode text: against a counter that steps a timecode the way a
// drop-frame clock does, and the texts other tools write.
#include <cstdint>
#include <string>

#include <gtest/gtest.h>

#include "platform/edl_text_timecode.h"
#include "support/label_clock.h"

namespace tcs::translator {
namespace {

std::string Format(uint32_t frames, TimecodeRate rate) {
  char text[kMaxTimecodeText];
  return std::string(text, FormatTimecode(frames, rate, text));
}

bool Parse(const std::string& text, TimecodeRate rate, uint32_t& frames) {
  size_t pos = 0;
  TimecodeText tc;
  return ScanTimecode(text, pos, tc) && pos == text.size() && TimecodeToFrames(tc, rate, frames);
}

// The whole timeline (past 24 hours) at 29.97 drop-frame, and a few hours at
// 59.94, 24, 25 and 30, agree with a clock both ways.
TEST(EdlTimecode, MatchesAClockFrameByFrame) {
  struct Case {
    TimecodeRate rate;
    uint32_t drop, frames;
  };
  const Case cases[] = {{MakeRate(30, true), 2, 10692001},
                        {MakeRate(60, true), 4, 60 * 3600 * 3},
                        {MakeRate(24, false), 0, 24 * 3600 * 3},
                        {MakeRate(25, false), 0, 25 * 3600 * 3},
                        {MakeRate(30, false), 0, 30 * 3600 * 3}};
  for (const Case& c : cases) {
    tcs_test::LabelClock clock{c.rate.fps, c.drop};
    for (uint32_t frame = 0; frame < c.frames; ++frame, clock.Tick()) {
      // The clock runs through every frame; the text is checked where a
      // minute turns (where frame numbers are dropped) and at every 61st.
      const bool turning = (clock.s == 0 && clock.f < 6) || (clock.s == 59 && clock.f + 3 >= clock.fps);
      if (!turning && frame % 61 != 0) continue;
      uint32_t back = 0;
      if (Format(frame, c.rate) != clock.Label() || !Parse(clock.Label(), c.rate, back) || back != frame) {
        FAIL() << "frame " << frame << ": " << Format(frame, c.rate) << " read back as " << back;
      }
    }
  }
}

// Glued timecodes, ';' and '.', refused texts, rate normalisation, hours past
// two digits. (Random frames over the whole range round-trip in
// EdlReader.ReadsBackWhatTheWriterWrites.)
TEST(EdlTimecode, ScansWhatToolsWriteAndRefusesWhatNoRateCounts) {
  const TimecodeRate ndf = MakeRate(30, false);
  // Timecodes run together read one after the other.
  const std::string glued = "01:00:00:0001:00:05:00";
  size_t pos = 0;
  TimecodeText a, b;
  ASSERT_TRUE(ScanTimecode(glued, pos, a) && ScanTimecode(glued, pos, b));
  EXPECT_EQ(pos, glued.size());
  uint32_t fa = 0, fb = 0;
  ASSERT_TRUE(TimecodeToFrames(a, ndf, fa) && TimecodeToFrames(b, ndf, fb));
  EXPECT_EQ(fb - fa, 150u);

  uint32_t frames = 0;
  // A ';' asks for drop-frame counting even where the rate did not.
  ASSERT_TRUE(Parse("00:10:00;00", ndf, frames));
  EXPECT_EQ(frames, 17982u);
  ASSERT_TRUE(Parse("00:10:00.00", ndf, frames));
  EXPECT_EQ(frames, 18000u);
  ASSERT_TRUE(Parse("00:01:00;00", MakeRate(25, false), frames));
  EXPECT_EQ(frames, 1500u);  // no drop-frame at 25

  for (const char* bad : {"00:00:00:25", "00:60:00:00", "00:00:60:00", "00:00:00:5", "00:00:0000",
                          "4000000:00:00:00", ":00:00:00"}) {
    EXPECT_FALSE(Parse(bad, MakeRate(25, false), frames)) << bad;
  }
  EXPECT_EQ(MakeRate(0, true), MakeRate(30, true));
  EXPECT_FALSE(MakeRate(25, true).dropFrame);
  EXPECT_EQ(MakeRate(500, false).fps, 30u);
  EXPECT_EQ(MakeRate(29, true), MakeRate(30, true));
  EXPECT_EQ(Format(UINT32_MAX, MakeRate(1, false)), "1193046:28:15:00");
  EXPECT_TRUE(Parse("1193046:28:15:00", MakeRate(1, false), frames) && frames == UINT32_MAX);
  EXPECT_FALSE(Parse("1193046:28:16:00", MakeRate(1, false), frames));
}

}  // namespace
}  // namespace tcs::translator
