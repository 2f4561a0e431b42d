// The EDL reader on texts laid out as other tools write them, on broken
// texts, and on what the writer makes of random lines.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "cmx3600/reader.h"
#include "cmx3600/writer.h"
#include "timecode/frame_rate.h"

namespace tcs::cmx3600 {
namespace {

using timecode::FrameRate;
using timecode::MakeFrameRate;

constexpr bool kCut = false;
constexpr bool kTransition = true;

// An event with its texts held by value.
struct Kept {
  uint32_t sourceIn, sourceOut, recordIn, recordOut, video, audio, code, duration;
  std::string reel, name, comment, clipName;
  bool transition = kCut;
  int32_t speed = INT32_MIN;  // none
  uint32_t speedEntry = 0;
  bool operator==(const Kept&) const = default;
};

struct Result {
  std::vector<Kept> events;
  std::vector<std::pair<uint32_t, WarningKind>> warnings;  // line, kind
  std::vector<uint32_t> lines;                             // each event's line
  bool read = false;
};

void Collect(void* context, const Event& e) {
  auto& result = *static_cast<Result*>(context);
  result.events.push_back({e.sourceIn, e.sourceOut, e.recordIn, e.recordOut, e.video, e.audio,
                           e.effectCode, e.effectDuration, std::string(e.reel), std::string(e.name),
                           std::string(e.comment), std::string(e.clipName), e.transition,
                           e.hasSpeed ? e.speedMilliFps : INT32_MIN, e.speedEntry});
  result.lines.push_back(e.line);
}

void CollectWarning(void* context, const Warning& w) {
  static_cast<Result*>(context)->warnings.emplace_back(w.line, w.kind);
}

Result Read(const std::string& text, FrameRate rate = {}, bool strict = false) {
  Result result;
  EventReader reader({rate, strict}, &Collect, &CollectWarning, &result);
  result.read = reader.Read(text);
  return result;
}

constexpr uint32_t kHour = 108000;  // at 30 frames per second

TEST(Cmx3600Reader, ReadsWhatOtherToolsWrite) {
  const std::string crlf_tool =
      "TITLE: Sequence 01\r\n"
      "FCM: NON-DROP FRAME\r\n"
      "\r\n"
      "001  AX       V     C        00:00:00:00 00:00:05:00 01:00:00:00 01:00:05:00\r\n"
      "* FROM CLIP NAME: Interview_A.mov\r\n"
      "* SOURCE FILE: /media/Interview_A.mov\r\n"
      "   \r\n"
      "002  AX       AA/V  C        00:00:10:00 00:00:12:00 01:00:05:00 01:00:07:00\r\n"
      "AUD   3    4\r\n"
      "*FROM CLIP NAME:  Broll 2.mov\r\n"
      "* LOC: 01:00:06:00 RED     check this\r\n"
      "ASC_SOP (1.0 1.0 1.0)(0.0 0.0 0.0)(1.0 1.0 1.0)\r\n"
      "*ASC_SAT 1.0\r\n"
      "003  TAPE01   V     C        01:00:00:00 01:00:00:10 01:00:07:00 01:00:07:00\r\n"
      "003  TAPE02   V     D    030 02:00:00:00 02:00:03:00 01:00:07:00 01:00:10:00\r\n"
      "EFFECTS NAME IS CROSS DISSOLVE\r\n"
      "* FROM CLIP NAME: outgoing.mov\r\n"
      "* TO CLIP NAME: incoming.mov\r\n"
      "004  AX       A     C        00:00:00:00 00:00:02:00 01:00:10:00 01:00:12:00\r\n"
      "M2   AX       050.0                00:00:00:00\r\n"
      "from clip name: slow.wav\r\n"
      "FROM CLIP: C:\\Media\\slow.wav\r\n"
      "005  AX       A2    D    012 00:00:02:00 00:00:03:00 01:00:12:00 01:00:13:00\r\n"
      "005  AX       V     D    012 00:00:02:00 00:00:03:00 01:00:12:00 01:00:13:00\r\n"
      ">>> SOURCE AX  /media/tone.wav\r\n"
      "006  R2       B     W002 045 00:00:00:00 00:00:01:00 01:00:13:00 01:00:14:00\r\n"
      "* a note of the editor\r\n"
      "*\r\n"
      "SPLIT:   AUDIO DELAY=  00:00:00:10\r\n";
  const std::vector<Kept> expected = {
      {0, 150, kHour, kHour + 150, 1, 0, 0, 0, "AX", "Interview_A.mov",
       "SOURCE FILE: /media/Interview_A.mov", ""},
      {300, 360, kHour + 150, kHour + 210, 1, 0xF, 0, 0, "AX", "Broll 2.mov",
       "LOC: 01:00:06:00 RED     check this\nASC_SOP (1.0 1.0 1.0)(0.0 0.0 0.0)(1.0 1.0 1.0)\n"
       "ASC_SAT 1.0", ""},
      {2 * kHour, 2 * kHour + 90, kHour + 210, kHour + 300, 1, 0, 0, 30, "TAPE02", "incoming.mov",
       "EFFECTS NAME IS CROSS DISSOLVE", "", kTransition},
      {0, 60, kHour + 300, kHour + 360, 0, 1, 0, 0, "AX", "slow.wav", "FROM CLIP: C:\\Media\\slow.wav",
       "", kCut, 50000, 0},
      {60, 90, kHour + 360, kHour + 390, 1, 2, 0, 12, "AX", "", "", "", kTransition},
      {0, 30, kHour + 390, kHour + 420, 1, 1, 2, 45, "R2", "", "a note of the editor", "",
       kTransition},
  };
  Result crlf = Read(crlf_tool);
  EXPECT_TRUE(crlf.read);
  EXPECT_EQ(crlf.events, expected);
  // The M2 line gives event 004 its speed; SPLIT is warned about.
  const std::vector<std::pair<uint32_t, WarningKind>> crlf_warnings = {
      {29, WarningKind::kSplitIgnored}};
  EXPECT_EQ(crlf.warnings, crlf_warnings);

  // Drop-frame over ':' timecodes (00:10:00:00 is frame 17982), six-digit
  // event numbers, a reel of eight run into its track, timecodes run
  // together, FCM changing mid-file (sources count as it says, records as
  // the list does), lower case, LF and CR.
  const std::string df_tool =
      "title: df\n"
      "fcm: drop frame\n"
      "000001  ABCDEFG.V     w001 015 00:00:59:28 00:01:00:12 00:10:00:00 00:10:00:12\n"
      "000002  reel_1   a2    d    010 00:00:00;00 00:00:01;00 00:10:00;12 00:10:01;12\r"
      "FCM: NON DROP FRAME\n"
      "000003  BL       NONE  C        00:01:00:00 00:01:01:00 00:20:00:00 00:20:01:00\n"
      "4 X1 A12 C 00:00:00:0000:00:02:00 00:30:00:0000:30:02:00\n";
  const std::vector<Kept> df_expected = {
      {1798, 1810, 17982, 17994, 1, 0, 1, 15, "ABCDEFG.", "", "", "", kTransition},
      {0, 30, 17994, 18024, 0, 2, 0, 10, "reel_1", "", "", "", kTransition},
      {1800, 1830, 35964, 35994, 0, 0, 0, 0, "BL", "", "", ""},
      {0, 60, 53946, 54006, 0, 0x800, 0, 0, "X1", "", "", ""},
  };
  const Result df = Read(df_tool);
  EXPECT_TRUE(df.read);
  EXPECT_EQ(df.events, df_expected);
  const std::vector<std::pair<uint32_t, WarningKind>> df_warnings = {
      {7, WarningKind::kAmbiguousTracks}};
  EXPECT_EQ(df.warnings, df_warnings);
}

// A key plays over its background, so both are kept: the key one video
// track up, each with its own name (the background's comment keeps the
// note that names the key).
TEST(Cmx3600Reader, AKeyGoesOneVideoTrackAboveItsBackground) {
  const Result keyed = Read(
      "001  BG       V     K B      00:00:00:00 00:00:05:00 01:00:00:00 01:00:05:00\n"
      "001  FG       V     K    000 00:00:10:00 00:00:15:00 01:00:00:00 01:00:05:00\n"
      "* FROM CLIP NAME: background.mov\n"
      "* KEY CLIP NAME: title.mov\n");
  const std::vector<Kept> expected = {
      {0, 150, kHour, kHour + 150, 1, 0, 0, 0, "BG", "background.mov", "KEY CLIP NAME: title.mov",
       ""},
      {300, 450, kHour, kHour + 150, 2, 0, 0, 0, "FG", "title.mov", "", ""},
  };
  EXPECT_EQ(keyed.events, expected);
  const std::vector<std::pair<uint32_t, WarningKind>> warnings = {{1, WarningKind::kKeyAsCut},
                                                                  {2, WarningKind::kKeyAsCut}};
  EXPECT_EQ(keyed.warnings, warnings);
}

// Read tolerantly, a bad line is skipped with a warning naming it (an event
// line with its notes) and every other event is read; read strictly, the
// first bad line stops the reading: the events before it stay, an event whose
// notes the bad line may belong to does not.
TEST(Cmx3600Reader, SkipsABadLineOrStopsThereWhenStrict) {
  const std::string good =
      "001  AX       V     C        00:00:00:00 00:00:01:00 00:00:00:00 00:00:01:00\n"
      "002  AX       V     C        00:00:01:00 00:00:02:00 00:00:01:00 00:00:02:00\n"
      "* FROM CLIP NAME: second\n";
  struct Case {
    const char* bad;
    WarningKind kind;
    size_t kept_strict;  // events handed on before strict mode stops
  };
  const Case cases[] = {
      {"003  AX       V     C        00:00:00:00 00:00:01:00 00:00:02:00", WarningKind::kBadEventLine, 2},
      {"003  AX       V     X        00:00:00:00 00:00:01:00 00:00:02:00 00:00:03:00", WarningKind::kBadEventLine, 2},
      {"003  AX       Q     C        00:00:00:00 00:00:01:00 00:00:02:00 00:00:03:00", WarningKind::kBadEventLine, 2},
      {"003  AX       V     C        00:00:00:30 00:00:02:00 00:00:02:00 00:00:03:00", WarningKind::kFramePastRate, 2},
      {"003  AX       V     C        00:00:00:00 00:00:01:00 00:00:03:00 00:00:02:00", WarningKind::kRecordOutBeforeIn, 2},
      {"003  AX       V     C        00:00:00:00 00:00:01:00 99999:00:00:00 99999:00:00:10", WarningKind::kBadEventLine, 2},
      {"003  AX       V     C        00:61:00:00 00:00:01:00 00:00:02:00 00:00:03:00", WarningKind::kBadEventLine, 2},
      {"AUD 3 x", WarningKind::kBadAudioLine, 1},
      {"this line is not EDL", WarningKind::kUnknownLine, 1},
  };
  const std::string after =
      "\n* FROM CLIP NAME: belongs to the bad line when it is an event line\n"
      "004  AX  V  C  00:00:00:00 00:00:01:00 00:00:09:00 00:00:10:00\n";
  for (const Case& c : cases) {
    SCOPED_TRACE(c.bad);
    const std::string text = good + c.bad + after;
    const Result strict = Read(text, {}, true);
    EXPECT_FALSE(strict.read);
    ASSERT_EQ(strict.events.size(), c.kept_strict);
    ASSERT_EQ(strict.warnings.size(), 1u);
    EXPECT_EQ(strict.warnings[0], std::make_pair(4u, c.kind));

    const Result tolerant = Read(text);
    EXPECT_TRUE(tolerant.read);
    ASSERT_EQ(tolerant.warnings.size(), 1u);
    EXPECT_EQ(tolerant.warnings[0], std::make_pair(4u, c.kind));
    const bool counted_on = c.kind == WarningKind::kFramePastRate;  // read, not skipped
    ASSERT_EQ(tolerant.events.size(), counted_on ? 4u : 3u);
    EXPECT_EQ(tolerant.events[1].name, c.kind == WarningKind::kUnknownLine ||
                                               c.kind == WarningKind::kBadAudioLine
                                           ? "belongs to the bad line when it is an event line"
                                           : "second");
    EXPECT_EQ(tolerant.events.back().recordIn, 270u);
    EXPECT_EQ(tolerant.events.back().name, "");
    if (counted_on) {
      EXPECT_EQ(tolerant.events[2].sourceIn, 30u);
    }
  }
}

// The top audio track on an AUD line, a name escape that is not one, the
// list's counting set by the last FCM: line above the first event, padding
// and a byte-order mark, frame counts for timecodes.
TEST(Cmx3600Reader, EdgesOfTheText) {
  const std::string text =
      "\xEF\xBB\xBFTITLE: edges\n"
      "FCM: DROP FRAME\n"
      "FCM: NON DROP FRAME\n"
      "PROGRAM BANNER LINE OF SOME TOOL\n"
      "001  AX       NONE  C        00:00:00:00 00:00:01:00 00:10:00:00 00:10:01:00\n"
      "* FROM CLIP NAME: first\n"
      "AUD  3    32\n"
      "* TCS NAME: a\\x4Gb\\x41\\\\\n"
      "AUD  33\n"
      "002  AX       V     C        0 30 30 60\n"
      "1000 AX       V     C        00:00:01:00 00:00:02:00 00:00:02:00 00:00:03:00\n"
      "licence text after the last event\n"
      "\x1A\x1A\x1A\0\0";
  const Result read = Read(text);
  ASSERT_EQ(read.events.size(), 3u);
  EXPECT_EQ(read.events[0].recordIn, 18000u);  // non-drop: the later FCM line
  EXPECT_EQ(read.events[0].audio, 0x80000004u);
  EXPECT_EQ(read.events[0].name, "a\\x4GbA\\");
  EXPECT_EQ(read.events[1].sourceIn, 0u);
  EXPECT_EQ(read.events[1].recordOut, 60u);
  EXPECT_EQ(read.events[2].recordIn, 60u);
  const std::vector<std::pair<uint32_t, WarningKind>> warnings = {
      {9, WarningKind::kTracksDropped}, {12, WarningKind::kUnknownLine}};
  EXPECT_EQ(read.warnings, warnings);
}

// Cut lines and transition lines put every field in the same columns:
// number, reel, track field, edit type, duration, then the four timecodes.
TEST(Cmx3600Writer, CutAndTransitionLinesShareColumns) {
  std::string text;
  Event event;
  event.recordOut = event.sourceOut = 30;
  event.video = 1;
  event.reel = "R";
  AppendEvent(text, event, 1, {});
  event.transition = true;
  event.effectDuration = 15;
  AppendEvent(text, event, 2, {});
  event.effectCode = 7;
  AppendEvent(text, event, 3, {});
  const std::string expected =
      "001  R        V     C        00:00:00:00 00:00:01:00 00:00:00:00 00:00:01:00\r\n"
      "002  R        V     D    015 00:00:00:00 00:00:01:00 00:00:00:00 00:00:01:00\r\n"
      "003  R        V     W007 015 00:00:00:00 00:00:01:00 00:00:00:00 00:00:01:00\r\n";
  EXPECT_EQ(text, expected);
}

// Lists laid out any way a tool may lay them: number widths, reels of any
// length, any run of blanks between fields, ':' or '.' separators, frame
// counts, AUD lines, notes, and lines no reader knows among the events. Every
// event comes back as written, and each unknown line after the first event
// is named once, by its line.
TEST(Cmx3600Reader, ReadsFieldsWhateverTheColumnsAndSkipsOnlyWhatItCannotRead) {
  const char* seed_text = std::getenv("TCS_TEST_SEED");
  const uint32_t seed = seed_text != nullptr ? uint32_t(std::strtoul(seed_text, nullptr, 10)) : 301;
  std::mt19937 rng(seed);
  struct Track {
    const char* field;
    uint32_t video, audio;
  };
  const Track tracks[] = {{"V", 1, 0},    {"A", 0, 1},    {"AA", 0, 3}, {"B", 1, 1},   {"AA/V", 1, 3},
                          {"A2", 0, 2},   {"A3", 0, 4},   {"NONE", 0, 0}, {"V2", 2, 0}, {"a2/v", 1, 2}};
  const auto blanks = [&] { return std::string(1 + rng() % 6, ' '); };
  const auto timecode = [&](uint32_t frames) {
    const char sep = rng() % 4 == 0 ? '.' : ':';
    char text[32];
    std::snprintf(text, sizeof text, "%02u%c%02u%c%02u%c%02u", frames / 90000, sep,
                  frames / 1500 % 60, sep, frames / 25 % 60, sep, frames % 25);
    return std::string(text);
  };
  for (int round = 0; round < 20; ++round) {
    SCOPED_TRACE(testing::Message() << "seed " << seed << " round " << round);
    std::string text = "TITLE: any layout\nEDIT DECISION LIST BY SOME TOOL\n";
    uint32_t line = 2;
    Result expected;
    uint32_t record = 90000 + rng() % 1000;
    for (uint32_t n = 1; n <= 60; ++n) {
      const Track& track = tracks[rng() % std::size(tracks)];
      std::string reel;
      for (size_t i = 0, length = 1 + rng() % 20; i < length; ++i) {
        reel += "ABCXYZ0123456789_"[rng() % 17];
      }
      const uint32_t length = 1 + rng() % 100;
      const uint32_t source = rng() % 2000000;
      const bool dissolve = rng() % 4 == 0;
      const uint32_t duration = dissolve ? rng() % 100 : 0;
      char number[16];
      std::snprintf(number, sizeof number, "%0*u", int(3 + rng() % 4), n);
      std::string event = std::string(number) + blanks() + reel + blanks() + track.field + blanks();
      event += dissolve ? "D" + blanks() + std::to_string(duration) : std::string("C");
      const uint32_t times[4] = {source, source + length, record, record + length};
      const bool counts = rng() % 8 == 0;
      for (uint32_t t : times) event += blanks() + (counts ? std::to_string(t) : timecode(t));
      text += event + (rng() % 3 == 0 ? "   \r\n" : "\n");
      ++line;
      Kept kept{times[0], times[1], times[2], times[3], track.video, track.audio, 0, duration,
                reel, "", "", "", dissolve};
      if (rng() % 5 == 0) {
        text += "AUD  3    4\n";
        ++line;
        kept.audio |= 0xC;
      }
      if (rng() % 4 == 0) {
        text += "%% a line no reader knows " + std::to_string(n) + "\n";
        expected.warnings.emplace_back(++line, WarningKind::kUnknownLine);
      }
      expected.events.push_back(kept);
      record += length + rng() % 3;
    }
    const Result read = Read(text, MakeFrameRate(25, false));
    EXPECT_TRUE(read.read);
    ASSERT_EQ(read.events.size(), expected.events.size());
    for (size_t i = 0; i < read.events.size(); ++i) {
      ASSERT_EQ(read.events[i], expected.events[i]) << "event " << i + 1 << " in\n" << text;
    }
    EXPECT_EQ(read.warnings, expected.warnings);
  }
}

std::string RandomText(std::mt19937& rng, size_t max_words, bool lines) {
  static const char* const kWords[] = {"take", "A001C003", "crowd", "C:\\media\\x.mov", "über",
                                       "*", "FROM CLIP NAME:", "00:00:01:00", "a/b", "#7"};
  std::string text;
  const size_t words = rng() % (max_words + 1);
  for (size_t i = 0; i < words; ++i) {
    if (i > 0) text += (lines && rng() % 4 == 0) ? '\n' : ' ';
    text += kWords[rng() % std::size(kWords)];
  }
  return text;
}

// Names decide which clips an export joins into one event, so they come back
// byte for byte: blanks at either end, control characters, backslashes.
std::string RandomName(std::mt19937& rng) {
  static const char* const kOdd[] = {" ", "  ", "\t", "\x01", "\\", "\\x41", "\r\n", "\x7f"};
  std::string name = RandomText(rng, 3, false);
  if (rng() % 3 == 0) name = kOdd[rng() % std::size(kOdd)] + name;
  if (rng() % 3 == 0) name += kOdd[rng() % std::size(kOdd)];
  return name;
}

// Whatever the writer writes, the reader reads back field for field, at
// every rate, whatever rate the reader was told.
TEST(Cmx3600Reader, ReadsBackWhatTheWriterWrites) {
  std::mt19937 rng(301);
  const FrameRate rates[] = {MakeFrameRate(24, false), MakeFrameRate(25, false),
                             MakeFrameRate(30, false), MakeFrameRate(30, true),
                             MakeFrameRate(60, true), MakeFrameRate(120, false)};
  for (int round = 0; round < 40; ++round) {
    SCOPED_TRACE(round);
    const FrameRate rate = rates[round % std::size(rates)];
    Result written;
    std::string text;
    AppendHeader(text, "round trip", rate);
    for (uint32_t n = 1; n <= 50; ++n) {
      Event line;
      const uint32_t length = 1 + rng() % 5000;
      line.sourceIn = rng() % 2 ? rng() % 3000000 : rng() - length;
      line.sourceOut = line.sourceIn + length;
      line.recordIn = rng() % 10000000;
      line.recordOut = line.recordIn + length;
      line.video = rng() % 3 == 0 ? uint32_t(rng()) : rng() & 0xF;
      line.audio = rng() % 3 == 0 ? uint32_t(rng()) : rng() & rng() & 0xFFFF;
      const uint32_t kind = rng() % 4;
      line.transition = kind != 0;
      line.effectCode = kind == 1 ? 0 : kind == 2 ? rng() % 1000 : rng() % 3 ? 0 : rng();
      line.effectDuration = kind == 0 && rng() % 2 ? 0 : rng() % 2 ? rng() % 100 : rng();
      const char* const reels[] = {"", "AX", "A001C00.", "REEL 12", "A_VERY_LONG_REEL_NAME_1"};
      std::string name = RandomName(rng), comment = RandomText(rng, 8, true),
                  clip_name = RandomText(rng, 1, false).substr(0, 8);
      line.reel = reels[rng() % std::size(reels)];
      line.name = name;
      line.comment = comment;
      line.hasComment = !comment.empty();
      line.clipName = clip_name;
      // Speeds: reverse, freeze, slow, with up to three decimals.
      const int32_t speeds[] = {-25000, 0, 12500, 47560, 108500, 999999, -1, 5};
      line.hasSpeed = rng() % 3 == 0;
      line.speedMilliFps = line.hasSpeed ? speeds[rng() % std::size(speeds)] : 0;
      line.speedEntry = line.hasSpeed ? line.sourceIn : 0;
      AppendEvent(text, line, n, rate);
      Collect(&written, line);
    }
    const Result read = Read(text, MakeFrameRate(30, false));
    EXPECT_TRUE(read.read);
    ASSERT_EQ(read.events.size(), written.events.size());
    for (size_t i = 0; i < read.events.size(); ++i) {
      ASSERT_EQ(read.events[i], written.events[i]) << "event " << i + 1 << " in\n" << text;
    }
    // Only overlaps (random record ranges) are reported.
    for (const auto& [line, kind] : read.warnings) EXPECT_EQ(kind, WarningKind::kOverlap) << line;
  }
}

}  // namespace
}  // namespace tcs::cmx3600
