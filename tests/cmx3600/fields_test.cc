// The fields of an EDL event line: timecode text against a counter that steps
// a timecode the way a drop-frame clock does, the timecodes and track fields
// other tools write.
#include <cstdint>
#include <string>

#include <gtest/gtest.h>

#include "cmx3600/tracks.h"
#include "support/label_clock.h"
#include "timecode/timecode.h"

namespace tcs::cmx3600 {
namespace {

using timecode::FrameRate;

FrameRate MakeRate(uint32_t fps, bool drop) { return timecode::MakeFrameRate(fps, drop); }

std::string Format(uint32_t frames, FrameRate rate) { return timecode::TimecodeString(frames, rate); }

bool Parse(const std::string& text, FrameRate rate, uint32_t& frames) {
  size_t pos = 0;
  timecode::TimecodeText tc;
  return timecode::ScanTimecode(text, pos, tc) && pos == text.size() &&
         timecode::TimecodeToFrames(tc, rate, frames) == timecode::Count::kOk;
}

// The whole timeline (past 24 hours) at 29.97 drop-frame, and a few hours at
// 59.94, 24, 25 and 30, agree with a clock both ways.
TEST(Cmx3600Timecode, MatchesAClockFrameByFrame) {
  struct Case {
    FrameRate rate;
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

// ';' and '.', refused texts, rate normalisation, hours past two digits.
// (Random frames over the whole range round-trip in
// EdlReader.ReadsBackWhatTheWriterWrites; glued timecodes are read in
// EdlReader.ReadsWhatOtherToolsWrite.)
TEST(Cmx3600Timecode, ScansWhatToolsWriteAndRefusesWhatNoRateCounts) {
  const FrameRate ndf = MakeRate(30, false);
  uint32_t frames = 0;
  // A ';' asks for drop-frame counting even where the rate did not.
  EXPECT_TRUE(Parse("00:10:00;00", ndf, frames) && frames == 17982u);
  EXPECT_TRUE(Parse("00:10:00.00", ndf, frames) && frames == 18000u);
  EXPECT_TRUE(Parse("00:01:00;00", MakeRate(25, false), frames) && frames == 1500u);  // no drop at 25

  for (const char* bad : {"00:00:00:25", "00:60:00:00", "00:00:60:00", "00:00:00:5", "00:00:0000",
                          "4000000:00:00:00", ":00:00:00"}) {
    EXPECT_FALSE(Parse(bad, MakeRate(25, false), frames)) << bad;
  }
  EXPECT_EQ(MakeRate(0, true), MakeRate(30, true));
  EXPECT_FALSE(MakeRate(25, true).dropFrame);
  EXPECT_EQ(MakeRate(500, false).fps, 30u);
  EXPECT_EQ(Format(UINT32_MAX, MakeRate(1, false)), "1193046:28:15:00");
  // A frame field of the rate or more is counted on, and said so.
  timecode::TimecodeText tc;
  size_t pos = 0;
  ASSERT_TRUE(timecode::ScanTimecode("00:00:59:24", pos, tc));
  EXPECT_EQ(timecode::TimecodeToFrames(tc, MakeRate(24, false), frames), timecode::Count::kFramePastRate);
  EXPECT_EQ(frames, 59u * 24 + 24);
  EXPECT_EQ(timecode::TimecodeToFrames(tc, MakeRate(25, false), frames), timecode::Count::kOk);
  // From 100 frames per second the frame field takes three digits.
  EXPECT_EQ(Format(120 * 3600 + 119, MakeRate(120, false)), "01:00:00:119");
  EXPECT_TRUE(Parse("01:00:00:119", MakeRate(120, false), frames) && frames == 120u * 3600 + 119);
  EXPECT_TRUE(Parse("1193046:28:15:00", MakeRate(1, false), frames) && frames == UINT32_MAX);
  EXPECT_FALSE(Parse("1193046:28:16:00", MakeRate(1, false), frames));
}

// Track fields: the writer's standard spellings and the spellings other tools
// use read as the channels they mean. (That every mask the writer spells reads
// back whole is EdlReader.ReadsBackWhatTheWriterWrites.)
TEST(Cmx3600Tracks, StandardSpellingsBothWaysAndOtherToolsSpellings) {
  struct Case {
    const char* field;
    uint32_t video, audio;
    bool written;  // the writer spells these masks so
  };
  const Case cases[] = {
      {"V", 1, 0, 1},     {"A", 0, 1, 1},       {"A2", 0, 2, 1},       {"AA", 0, 3, 1},
      {"B", 1, 1, 1},     {"A2/V", 1, 2, 1},    {"AA/V", 1, 3, 1},     {"A3", 0, 4, 1},
      {"A4", 0, 8, 1},    {"A12", 0, 0x800, 1}, {"NONE", 0, 0, 1},     {"v", 1, 0, 0},
      {"aa/v", 1, 3, 0},  {"A/V", 1, 1, 0},     {"V2", 2, 0, 0},       {"A1", 0, 1, 0},
      {"a32", 0, 1u << 31, 0},                  {"none", 0, 0, 0}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.field);
    EXPECT_TRUE(!c.written || SpellTracks(c.video, c.audio).field == std::string(c.field));
    TrackMasks masks;
    ASSERT_TRUE(ParseTrackField(c.field, masks));
    EXPECT_EQ(masks.video, c.video);
    EXPECT_EQ(masks.audio, c.audio);
  }
  TrackMasks high;
  ASSERT_TRUE(ParseTrackField("A40", high));
  EXPECT_TRUE(high.dropped);
  // Glued fields: one audio track per digit, V glued on; two rising digits
  // up to 32 are one track, said to be ambiguous.
  struct Glued {
    const char* field;
    uint32_t video, audio;
    bool glued, ambiguous;
  };
  for (const Glued& g : {Glued{"A1234V", 1, 0xF, true, false}, Glued{"A34", 0, 0xC, true, false},
                         Glued{"a78", 0, 0xC0, true, false}, Glued{"A12", 0, 0x800, false, true},
                         Glued{"A21", 0, 1u << 20, false, false}, Glued{"A123", 0, 0x7, true, false},
                         Glued{"A32", 0, 1u << 31, false, false}}) {
    SCOPED_TRACE(g.field);
    TrackMasks masks;
    ASSERT_TRUE(ParseTrackField(g.field, masks));
    EXPECT_EQ(masks.video, g.video);
    EXPECT_EQ(masks.audio, g.audio);
    EXPECT_EQ(masks.glued, g.glued);
    EXPECT_EQ(masks.ambiguous, g.ambiguous);
  }
  for (const char* bad : {"", "X", "A0", "AV", "V/", "A103", "C", "W001", "A12X"}) {
    TrackMasks masks{5, 6, false};
    EXPECT_FALSE(ParseTrackField(bad, masks)) << bad;
    EXPECT_EQ(masks.video, 5u);
  }
  // V with A3 and up: the audio goes to AUD 3 4 and the translator's note.
  const TrackSpelling s = SpellTracks(0x3, 0x1C);
  EXPECT_STREQ(s.field, "V");
  EXPECT_TRUE(s.aud3 && s.aud4);
  EXPECT_EQ(s.extraVideo, 0x2u);
  EXPECT_EQ(s.extraAudio, 0x10u);
}

}  // namespace
}  // namespace tcs::cmx3600
