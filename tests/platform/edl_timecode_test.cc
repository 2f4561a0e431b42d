// EDL timecode text: against a counter that steps a timecode the way a
// drop-frame clock does, and the text-to-frames round trip over the range.
#include <cstdint>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "platform/edl_text_timecode.h"

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

// A timecode clock: adds one frame and skips the numbers drop-frame counting
// drops (the first `drop` frame numbers of every minute but each tenth).
struct Clock {
  uint32_t fps, drop;
  uint64_t h = 0;
  uint32_t m = 0, s = 0, f = 0;
  void Tick() {
    if (++f < fps) return;
    f = 0;
    if (++s < 60) return;
    s = 0;
    if (++m == 60) {
      m = 0;
      ++h;
    }
    if (m % 10 != 0) f = drop;
  }
  bool Shows(const TimecodeText& tc) const {
    return tc.hours == h && tc.minutes == m && tc.seconds == s && tc.frames == f &&
           tc.semicolon == (drop != 0);
  }
};

// The whole timeline (past 24 hours) at 29.97 drop-frame, and a few hours at
// 59.94, 24, 25 and 30, agree with the clock both ways.
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
    SCOPED_TRACE(c.rate.fps);
    Clock clock{c.rate.fps, c.drop};
    for (uint32_t frame = 0; frame < c.frames; ++frame, clock.Tick()) {
      // The clock runs through every frame; the text is checked where a
      // minute turns (where frame numbers are dropped) and at every 61st.
      const bool turning = (clock.s == 0 && clock.f < 6) || (clock.s == 59 && clock.f + 3 >= clock.fps);
      if (!turning && frame % 61 != 0) continue;
      char text[kMaxTimecodeText];
      const std::string_view view(text, FormatTimecode(frame, c.rate, text));
      size_t pos = 0;
      TimecodeText tc;
      uint32_t back = 0;
      if (!ScanTimecode(view, pos, tc) || pos != view.size() || !clock.Shows(tc) ||
          !TimecodeToFrames(tc, c.rate, back) || back != frame) {
        FAIL() << "frame " << frame << ": " << view << " read back as " << back;
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
