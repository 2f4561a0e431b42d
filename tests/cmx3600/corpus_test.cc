// The reader on 21 lists other editing tools wrote (tests/data/edl, see
// SOURCES.md). Every expectation is read off the file's own text by hand:
// the rate its frame fields and FCM: line give, events per track, a few
// events frame for frame, and the warnings it earns. Then a property over
// all of them: read, write, read gives the same events.
#include <fstream>
#include <iterator>
#include <map>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "cmx3600/rate_scan.h"
#include "cmx3600/reader.h"
#include "cmx3600/writer.h"
#include "record/timecode.h"
#include "support/test_clips.h"
#include "tcs.h"

namespace tcs::cmx3600 {
namespace {

using timecode::FrameRate;
using W = WarningKind;

std::string Load(const std::string& name) {
  std::ifstream in(std::string(TCS_TEST_DATA_DIR) + "/edl/" + name + ".edl", std::ios::binary);
  EXPECT_TRUE(in) << name;
  return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

struct Kept {
  uint32_t line, sourceIn, sourceOut, recordIn, recordOut, video, audio;
  bool transition;
  uint32_t code, duration;
  std::string reel, name, comment, clipName;
  int32_t speed;  // INT32_MIN: none
  uint32_t speedEntry;
  bool operator==(const Kept&) const = default;
};

struct Read {
  std::vector<Kept> events;
  std::map<W, int> warnings;
  std::vector<uint32_t> warnedLines;
  RateScan found;  // find_rate: where the reader found the rate
};

// At `rate`, or (find_rate) at the rate the reader finds in the text.
Read ReadText(const std::string& text, FrameRate rate, bool find_rate = false) {
  Read out;
  ReadSettings settings{rate};
  settings.findRate = find_rate;
  EventReader reader(
      settings,
      [](void* c, const Event& e) {
        static_cast<Read*>(c)->events.push_back(
            {e.line, e.sourceIn, e.sourceOut, e.recordIn, e.recordOut, e.video, e.audio,
             e.transition, e.effectCode, e.effectDuration, std::string(e.reel),
             std::string(e.name), std::string(e.comment), std::string(e.clipName),
             e.hasSpeed ? e.speedMilliFps : INT32_MIN, e.hasSpeed ? e.speedEntry : 0});
      },
      [](void* c, const Warning& w) {
        auto& read = *static_cast<Read*>(c);
        ++read.warnings[w.kind];
        read.warnedLines.push_back(w.line);
      },
      &out);
  EXPECT_TRUE(reader.Read(text));
  out.found = reader.rateScan();
  return out;
}

// Frames of hh:mm:ss:ff, counted without drop-frame.
constexpr uint32_t Tc(uint32_t h, uint32_t m, uint32_t s, uint32_t f, uint32_t fps) {
  return ((h * 60 + m) * 60 + s) * fps + f;
}

struct Spot {
  uint32_t line;  // of its event line (the incoming line of a transition)
  uint32_t sourceIn, recordIn, recordOut;
  uint32_t duration;  // of its transition, 0 for a cut
  const char* name;
};

struct Case {
  const char* file;
  uint32_t fps;
  bool drop;
  std::map<std::string, int> tracks;  // events per track
  std::vector<Spot> spots;
  std::map<W, int> warnings;
};

std::map<std::string, int> PerTrack(const std::vector<Kept>& events) {
  std::map<std::string, int> tracks;
  for (const Kept& e : events) {
    for (unsigned bit = 0; bit < 32; ++bit) {
      if ((e.video >> bit) & 1u) ++tracks["V" + std::to_string(bit + 1)];
      if ((e.audio >> bit) & 1u) ++tracks["A" + std::to_string(bit + 1)];
    }
  }
  return tracks;
}

const std::vector<Case>& Cases() {
  // A drop-frame hour: 108000 labels less 2 for 54 minutes of each hour.
  constexpr uint32_t kDfHour = 107892;
  static const std::vector<Case> cases = {
      // 590 event lines, 53 of them the outgoing half of a transition whose
      // incoming line gives a duration and no edit type; 272 M2 lines, 11 of
      // them naming the outgoing reel of a transition. Its records overlap. Line 14 follows FCM: DROP FRAME: its source counts
      // drop-frame, its record as the list (NON-DROP); line 27 follows
      // FCM: NON-DROP FRAME again.
      {"070816_EG101_HEISTS_ROUGH_CUT_SOURCES_PART_1", 30, false, {{"V1", 537}},
       {{14, Tc(1, 31, 42, 26, 30) - 2 * (91 - 9), Tc(1, 0, 1, 16, 30), Tc(1, 0, 2, 24, 30), 0,
         "QEVL1ESCP001.NEW.01"},
        {27, Tc(0, 1, 1, 10, 30), Tc(1, 0, 3, 1, 30), Tc(1, 0, 3, 11, 30), 8,
         "QEVL1HEIS395.NEW.01"}},
       {{W::kImpliedDissolve, 53}, {W::kSpeedIgnored, 11}, {W::kSourceLength, 207},
        {W::kOverlap, 173}}},
      // 588 single-track lines on A7 to A10; 14 whose source runs longer
      // than its record.
      {"12_16_TL01_MUSIC", 30, true, {{"A7", 158}, {"A8", 158}, {"A9", 136}, {"A10", 136}},
       {{3, kDfHour + 20, kDfHour + 11 * 30 + 4, kDfHour + 11 * 30 + 19, 0, "BFD_CHILI.MP3"}},
       {{W::kSourceLength, 14}}},
      // 33 event lines, three the outgoing halves of dissolves; five M2
      // lines, one after a dissolve naming its outgoing reel; ^Z padding.
      {"45S_SAMPLE", 25, false, {{"V1", 30}},
       {{2, Tc(4, 0, 57, 5, 25), Tc(10, 0, 0, 0, 25), Tc(10, 0, 1, 5, 25), 0, ""},
        {41, 0, Tc(10, 0, 41, 9, 25), Tc(10, 0, 42, 16, 25), 32, ""}},
       {{W::kSpeedIgnored, 1}}},
      {"FCP_REVERSE", 24, false, {{"V1", 1}},
       {{4, Tc(1, 0, 39, 23, 24), Tc(1, 0, 0, 0, 24), Tc(1, 0, 40, 0, 24), 0, "BARS_40S.MOV"}},
       {}},
      // K B (the background, placed) then a key of no record length.
      {"KEY_TRANSITION", 30, true, {{"V1", 1}},
       {{4, 66 * 30 + 6 - 2, kDfHour + 4 * 30 + 10, kDfHour + 6 * 30 + 7, 0,
         "foobarz_0118_023-APPLE PRORES WITH ALPHA.MOV"}},
       {{W::kKeyAsCut, 1}, {W::kZeroLength, 1}}},
      // CR line ends only.
      {"PLATES", 25, false, {{"V1", 3}},
       {{3, Tc(3, 9, 0, 13, 25), Tc(1, 0, 43, 12, 25), Tc(1, 1, 38, 18, 25), 0, ""}}, {}},
      // A1234V: V and audio tracks 1 to 4.
      {"REEL_IS_CLIP", 25, false, {{"V1", 4}, {"A1", 4}, {"A2", 4}, {"A3", 4}, {"A4", 4}},
       {{1, 0, Tc(10, 0, 0, 0, 25), Tc(10, 0, 12, 24, 25), 0, ""}},
       {{W::kGluedTracks, 4}}},
      // Nine source frames for ten record frames, at half speed.
      {"TIMEWARP_HALF", 24, false, {{"V1", 1}},
       {{4, Tc(3, 3, 19, 19, 24), Tc(1, 0, 4, 3, 24), Tc(1, 0, 4, 13, 24), 0, ""}},
       {}},
      // Dissolves from black; lines labelled without '*'; ^Z and NUL padding.
      {"TRAILER_EDL", 25, false, {{"V1", 32}},
       {{5, Tc(6, 42, 50, 18, 25), Tc(1, 0, 0, 0, 25), Tc(1, 0, 1, 20, 25), 43, "TAPE_6-10.MOV"}},
       {{W::kSpeedIgnored, 1}}},
      {"cdl", 24, false, {{"V1", 2}},
       {{9, Tc(1, 0, 4, 5, 24), Tc(0, 0, 1, 7, 24), Tc(0, 0, 2, 14, 24), 0, "ZZ100_501 (LAY3)"}},
       {}},
      // Every frame field of 29.97 doubled.
      {"cmx3600_5994", 60, true, {{"V1", 9}},
       {{3, Tc(1, 49, 40, 2, 60) - 4 * 99, 215784, 215784 + 6 * 60 + 34, 0,
         "ACC112 WARBIRDS.NEW.01"}},
       {{W::kOverlap, 2}}},
      {"dissolve_test_2", 24, false, {{"V1", 3}},
       {{6, Tc(1, 0, 8, 4, 24), Tc(1, 0, 0, 5, 24), Tc(1, 0, 0, 15, 24), 10, "clip_B"}}, {}},
      // The outgoing cut is event 001, the dissolve event 002: said so.
      {"dissolve_test_fail", 24, false, {{"V1", 3}},
       {{6, Tc(1, 0, 8, 8, 24), Tc(1, 0, 0, 9, 24), Tc(1, 0, 0, 19, 24), 10, "clip_B"}},
       {{W::kTransitionNumbers, 1}}},
      {"edl_mixed_line_endings", 24, false, {{"V1", 1}},
       {{4, Tc(1, 23, 39, 0, 24), Tc(10, 2, 51, 10, 24), Tc(10, 3, 1, 11, 24), 0, ""}}, {}},
      {"file32", 30, true, {{"V1", 9}},
       {{3, Tc(1, 49, 40, 1, 30) - 2 * 99, kDfHour, kDfHour + 6 * 30 + 17, 0,
         "ACC112 WARBIRDS.NEW.01"}},
       {{W::kOverlap, 2}}},
      {"genius__cmx3600", 30, true, {{"V1", 9}},
       {{3, Tc(1, 49, 40, 1, 30) - 2 * 99, kDfHour, kDfHour + 6 * 30 + 17, 0,
         "ACC112 WARBIRDS.NEW.01"}},
       {{W::kOverlap, 2}}},
      // Records start before the hour.
      {"nucoda_example", 24, false, {{"V1", 2}},
       {{2, Tc(1, 0, 4, 5, 24), Tc(0, 59, 53, 11, 24), Tc(0, 59, 54, 18, 24), 0, "take_1"}}, {}},
      {"premiere_example", 24, false, {{"V1", 2}},
       {{4, Tc(1, 0, 6, 13, 24), Tc(0, 59, 54, 18, 24), Tc(0, 59, 56, 20, 24), 0,
         "ZZ100_502A.take_2.0101.exr"}},
       {}},
      // A freeze frame: one source frame for 17 record frames.
      {"speed_effects_small", 24, false, {{"V1", 5}},
       {{5, Tc(1, 0, 10, 21, 24), Tc(1, 8, 30, 0, 24), Tc(1, 8, 30, 17, 24), 0,
         "Z682_156 (LAY3) FF"}},
       {}},
      // Frame 24: 25 fps. AUD 3 4 after a note; 004 and 005 share a range.
      {"test_24", 25, false, {{"V1", 7}, {"A1", 3}, {"A2", 3}, {"A3", 1}, {"A4", 1}},
       {{9, 0, Tc(0, 0, 59, 24, 25), Tc(0, 1, 30, 0, 25), 0, "clip -3"}},
       {{W::kSourceLength, 1}, {W::kOverlap, 1}}},
      // D 026 over a record span of 73 frames.
      {"transition_duration", 24, false, {{"V1", 4}},
       {{6, Tc(1, 0, 10, 8, 24), Tc(1, 0, 56, 8, 24), Tc(1, 0, 59, 9, 24), 26, ""}}, {}},
  };
  return cases;
}

TEST(Cmx3600Corpus, EveryListReadAsItsTextSays) {
  ASSERT_EQ(Cases().size(), 21u);
  for (const Case& c : Cases()) {
    SCOPED_TRACE(c.file);
    const std::string text = Load(c.file);
    const RateScan scan = ScanRate(text);
    EXPECT_EQ(scan.rate.fps, c.fps);
    EXPECT_EQ(scan.rate.dropFrame, c.drop);
    const Read read = ReadText(text, scan.rate);
    EXPECT_EQ(PerTrack(read.events), c.tracks);
    EXPECT_EQ(read.warnings, c.warnings);
    // The reader that finds the rate itself, in its one parse of the text,
    // finds the scan's and reads the same, whatever rate it is handed.
    const Read found = ReadText(text, timecode::MakeFrameRate(c.fps == 24 ? 60 : 24, false), true);
    EXPECT_EQ(found.found.rate, scan.rate);
    EXPECT_EQ(found.found.source, scan.source);
    EXPECT_EQ(found.found.highestFrame, scan.highestFrame);
    EXPECT_EQ(found.found.eventLines, scan.eventLines);
    EXPECT_EQ(found.events, read.events);
    EXPECT_EQ(found.warnedLines, read.warnedLines);
    for (const Spot& spot : c.spots) {
      SCOPED_TRACE(spot.line);
      const auto found = std::find_if(read.events.begin(), read.events.end(),
                                      [&](const Kept& e) { return e.line == spot.line; });
      ASSERT_NE(found, read.events.end());
      EXPECT_EQ(found->sourceIn, spot.sourceIn);
      EXPECT_EQ(found->recordIn, spot.recordIn);
      EXPECT_EQ(found->recordOut, spot.recordOut);
      EXPECT_EQ(found->sourceOut - found->sourceIn, spot.recordOut - spot.recordIn);
      EXPECT_EQ(found->transition, spot.duration != 0);
      EXPECT_EQ(found->duration, spot.duration);
      EXPECT_EQ(found->name, spot.name);
    }
  }
}

// What a corpus list says beyond counts: names, notes and reels as written.
TEST(Cmx3600Corpus, TwinListsAndNotesAsWritten) {
  // file32 is genius__cmx3600 with wide columns and whole reels: the same
  // events but for the reels, which the narrow list cuts to eight.
  const FrameRate df = timecode::MakeFrameRate(30, true);
  Read wide = ReadText(Load("file32"), df);
  const Read narrow = ReadText(Load("genius__cmx3600"), df);
  ASSERT_EQ(wide.events.size(), narrow.events.size());
  EXPECT_EQ(wide.events[2].reel, "BOONE_SMITH_ON_CAMERA_HOST_-720P");
  for (size_t i = 0; i < wide.events.size(); ++i) {
    EXPECT_EQ(wide.events[i].reel.substr(0, 8), narrow.events[i].reel);
    wide.events[i].reel = narrow.events[i].reel;
    EXPECT_EQ(wide.events[i], narrow.events[i]);
  }

  const Read cdl = ReadText(Load("cdl"), timecode::MakeFrameRate(24, false));
  EXPECT_EQ(cdl.events[0].comment,
            "ASC_SOP (0.1 0.2 0.3) (1.0 -0.0122 0.0305) (1.0 0.0 1.0)\nASC_SAT 0.9\n"
            "SOURCE FILE: ZZ100_501.LAY3.01");
  const Read key = ReadText(Load("KEY_TRANSITION"), df);
  EXPECT_NE(key.events[0].comment.find("KEY CLIP NAME:  foobarz_0118_026"), std::string::npos);
  EXPECT_EQ(key.events[0].reel, "AX");
  const Read mixed = ReadText(Load("edl_mixed_line_endings"), timecode::MakeFrameRate(25, false));
  EXPECT_EQ(mixed.events[0].comment, "A\nB\nC\nD\nE\nF\nG");
  EXPECT_EQ(mixed.events[0].reel, "A001C004_130917");
  const Read premiere = ReadText(Load("premiere_example"), timecode::MakeFrameRate(24, false));
  EXPECT_EQ(premiere.events[0].reel, "AX");

  // M2 lines: reverse, a freeze frame, half speed, each from its source in.
  struct Speed {
    const char* file;
    uint32_t fps;
    size_t event;
    int32_t speed;
  };
  for (const Speed& s : {Speed{"FCP_REVERSE", 25, 0, -25000}, Speed{"speed_effects_small", 24, 1, 0},
                         Speed{"speed_effects_small", 24, 4, 47600},
                         Speed{"TIMEWARP_HALF", 25, 0, 12500}, Speed{"45S_SAMPLE", 25, 11, 12500}}) {
    SCOPED_TRACE(s.file);
    const Read read = ReadText(Load(s.file), timecode::MakeFrameRate(s.fps, false));
    ASSERT_GT(read.events.size(), s.event);
    EXPECT_EQ(read.events[s.event].speed, s.speed);
    EXPECT_EQ(read.events[s.event].speedEntry, read.events[s.event].sourceIn);
  }

  // Told 24, test_24 says where its frame fields pass the rate: the source
  // and record out of line 4, the record in of line 9.
  const Read at24 = ReadText(Load("test_24"), timecode::MakeFrameRate(24, false));
  EXPECT_EQ(at24.warnings.at(W::kFramePastRate), 3);
}

// Read into a space through the translator, every list plays frame for
// frame what a brute-force model of its events says: per track, each event
// owns its record frames, a later one taking them from an earlier one.
TEST(Cmx3600Corpus, SpacePlaysWhatTheEventsSayFrameForFrame) {
  for (const Case& c : Cases()) {
    SCOPED_TRACE(c.file);
    const FrameRate rate = timecode::MakeFrameRate(c.fps, c.drop);
    const std::string text = Load(c.file);
    const Read read = ReadText(text, rate);
    uint32_t first = UINT32_MAX, end = 0;
    for (const Kept& e : read.events) {
      first = std::min(first, e.recordIn);
      end = std::max(end, e.recordOut);
    }
    const uint32_t window = end - first + 1;
    std::vector<std::vector<const Kept*>> owner(64);  // empty: a track nothing plays on
    for (const Kept& e : read.events) {
      for (unsigned track = 0; track < 64; ++track) {
        const uint32_t mask = track < 32 ? e.video : e.audio;
        if (((mask >> (track % 32)) & 1u) == 0) continue;
        if (owner[track].empty()) owner[track].assign(window, nullptr);
        for (uint32_t f = e.recordIn; f < e.recordOut; ++f) owner[track][f - first] = &e;
      }
    }
    EDLSETTINGS settings;
    edlInitSettings(&settings, c.fps, c.drop ? 1 : 0);
    tcs_test::OpenedSpace space;
    ASSERT_EQ(edlReadText(space.get(), text.data(), text.size(), &settings, nullptr, nullptr), 0u);
    // Every event's edges and the frames either side, and every 11th frame.
    std::vector<uint32_t> frames;
    for (const Kept& e : read.events) {
      for (uint32_t f : {e.recordIn - 1, e.recordIn, e.recordIn + 1, e.recordOut - 1, e.recordOut}) {
        if (f >= first && f <= end) frames.push_back(f);
      }
    }
    for (uint32_t f = first; f <= end; f += 11) frames.push_back(f);
    for (unsigned track = 0; track < 64; ++track) {  // a track's channel is its number
      for (const uint32_t f : frames) {
        CClip* clip = nullptr;
        const uint32_t source = tcsTranslate(space.get(), 0, f, &clip, track);
        const Kept* expected = owner[track].empty() ? nullptr : owner[track][f - first];
        if (expected == nullptr) {
          ASSERT_EQ(source, kNotFound) << "track " << track << " frame " << f;
          continue;
        }
        ASSERT_NE(source, kNotFound) << "track " << track << " frame " << f;
        ASSERT_EQ(clip->hostTag, expected->line) << "track " << track << " frame " << f;
        ASSERT_EQ(source, expected->sourceIn + (f - expected->recordIn));
      }
    }
  }
}

// Read, write at the rate read, read again: the same events, field for
// field, for every list (event numbers and lines aside: the writer numbers
// its events).
TEST(Cmx3600Corpus, ReadWriteReadKeepsEveryEvent) {
  for (const Case& c : Cases()) {
    SCOPED_TRACE(c.file);
    const FrameRate rate = timecode::MakeFrameRate(c.fps, c.drop);
    const Read first = ReadText(Load(c.file), rate);
    std::string written;
    AppendHeader(written, c.file, rate);
    uint32_t number = 0;
    for (const Kept& k : first.events) {
      Event e;
      e.sourceIn = k.sourceIn;
      e.sourceOut = k.sourceOut;
      e.recordIn = k.recordIn;
      e.recordOut = k.recordOut;
      e.video = k.video;
      e.audio = k.audio;
      e.transition = k.transition;
      e.effectCode = k.code;
      e.effectDuration = k.duration;
      e.reel = k.reel;
      e.name = k.name;
      e.comment = k.comment;
      e.hasComment = !k.comment.empty();
      e.clipName = k.clipName;
      e.hasSpeed = k.speed != INT32_MIN;
      e.speedMilliFps = e.hasSpeed ? k.speed : 0;
      e.speedEntry = k.speedEntry;
      AppendEvent(written, e, ++number, rate);
    }
    Read again = ReadText(written, timecode::MakeFrameRate(30, false));
    ASSERT_EQ(again.events.size(), first.events.size());
    for (size_t i = 0; i < first.events.size(); ++i) {
      again.events[i].line = first.events[i].line;
      ASSERT_EQ(again.events[i], first.events[i]) << "event " << i + 1;
    }
  }
}

}  // namespace
}  // namespace tcs::cmx3600
