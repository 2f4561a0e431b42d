// The host kit's EDL writer against the translator's reader: read, write,
// read gives the same clips on every channel, over the real lists of
// tests/data/edl and over random spaces; the text it writes reads without a
// warning; clips that differ in anything an event carries are never joined.
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <random>
#include <string>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>

#include "cmx3600/cmx3600.h"
#include "edit_request.h"
#include "edl_writer.h"
#include "tcs.h"

namespace {

using tcs::timecode::FrameRate;

// A clip as a list carries it: channel, start, length, the source frames it
// plays (at its speed), texts, transition, speed and the counting of its
// source timecodes. A speed clip cut at its
// head may come back with its source in and speed entry moved together,
// playing the same frames.
using Carried = std::tuple<uint32_t, uint32_t, uint32_t, std::vector<uint32_t>, std::string,
                           std::string, std::string, std::string, bool, uint32_t, uint32_t,
                           int32_t, uint32_t>;

// The speed of a clip as thousandths of a frame per second and its entry;
// a clip without one says 1 frame per second in reverse, a speed the random
// lists never give.
std::pair<int32_t, uint32_t> SpeedOf(const CLIPINFO& info) {
  std::pair<int32_t, uint32_t> speed{-1000, 0};
  clsGetClipSpeed(&info, &speed.first, &speed.second);
  return speed;
}

std::string Str(const char* text) { return text != nullptr ? text : ""; }

unsigned int Accept(void*, CTimeCodeSpace*, CClip*) { return 0; }

class Space {
 public:
  Space() : space_(tcsOpen(nullptr, nullptr, nullptr)) { tcsSetAddCallback(space_, nullptr, &Accept); }
  ~Space() { tcsClose(space_); }
  Space(const Space&) = delete;
  Space& operator=(const Space&) = delete;
  CTimeCodeSpace* get() const { return space_; }

  void Read(const std::string& text, FrameRate rate) {
    fps_ = rate.fps;
    EDLSETTINGS settings;
    edlInitSettings(&settings, rate.fps, rate.dropFrame ? 1 : 0);
    ASSERT_EQ(edlReadText(space_, text.data(), text.size(), &settings,
                          [](void*, const EDLWARNING*) {}, nullptr),
              0u);
  }

  std::vector<Carried> Clips() const {
    std::vector<Carried> clips;
    for (uint32_t channel = 0; channel < 96; ++channel) {
      unsigned int from = 0;
      unsigned int count = 0;
      TCSCLIP rows[64];
      do {
        EXPECT_EQ(tcsGetClips(space_, channel, from, TCS_NO_TIMECODE, rows, 64, &count, &from), 0u);
        for (unsigned int i = 0; i < count; ++i) {
          const TCSCLIP& r = rows[i];
          const CLIPINFO info = r.info != nullptr ? *r.info : CLIPINFO{};
          std::vector<uint32_t> played{r.sourceIn};
          if (clsGetClipSpeed(&info, nullptr, nullptr) != 0) {
            played.clear();
            for (uint32_t f = 0; f < r.length; ++f) {
              played.push_back(clsPlayedSource(&info, r.sourceIn + f, fps_));
            }
          }
          clips.emplace_back(channel, r.start, r.length, std::move(played), Str(info.name),
                             Str(info.reel), Str(info.clipName), Str(info.comment),
                             r.effectText[0] != '\0', r.effectCode, r.effectDuration,
                             SpeedOf(info).first, clsGetSourceCounting(&info));
        }
      } while (from != TCS_NO_TIMECODE && count > 0);
    }
    return clips;
  }

  std::string Written(FrameRate rate, std::string_view title = "T") const {
    std::string text;
    EXPECT_EQ(tcs::host::AppendSpaceEdl(space_, {title, rate}, text), 0u);
    return text;
  }

 private:
  CTimeCodeSpace* space_;
  uint32_t fps_ = 30;
};

struct Parsed {
  std::vector<std::string> warnings;
  size_t events = 0;
  // Each transition's outgoing source: reel, source timecode, name.
  std::vector<std::tuple<std::string, uint32_t, std::string>> outgoing;
};

Parsed Parse(const std::string& text, FrameRate rate) {
  Parsed parsed;
  tcs::cmx3600::ReadSettings settings;
  settings.rate = rate;
  tcs::cmx3600::EventReader reader(
      settings,
      [](void* p, const tcs::cmx3600::Event& event) {
        auto* parsed = static_cast<Parsed*>(p);
        ++parsed->events;
        if (event.hasOutgoing) {
          parsed->outgoing.emplace_back(event.outgoingReel, event.outgoingSource,
                                        event.outgoingName);
        }
      },
      [](void* p, const tcs::cmx3600::Warning& w) {
        static_cast<Parsed*>(p)->warnings.push_back(std::to_string(w.line) + ": " +
                                                    std::string(w.text));
      },
      &parsed);
  EXPECT_TRUE(reader.Read(text));
  return parsed;
}

// What plays at `frame` of `channel` as the space's lookups answer it (the
// last listed clip that holds the frame), with the source frame it plays at
// its speed (`fps`: the timeline's rate) and its texts.
std::string PlayingAt(const Space& space, uint32_t channel, uint32_t frame, uint32_t fps) {
  TCSCLIP rows[8];
  unsigned int count = 0;
  unsigned int next = 0;
  EXPECT_EQ(tcsGetClips(space.get(), channel, frame, frame + 1, rows, 8, &count, &next), 0u);
  for (unsigned int i = count; i-- > 0;) {
    const TCSCLIP& r = rows[i];
    if (r.start > frame || frame - r.start >= r.length) continue;
    const CLIPINFO info = r.info != nullptr ? *r.info : CLIPINFO{};
    return std::to_string(clsPlayedSource(&info, r.sourceIn + frame - r.start, fps)) + "|" +
           Str(info.name) + "|" +
           Str(info.reel) + "|" + Str(info.clipName) + "|" + Str(info.comment) + "|" +
           std::to_string(SpeedOf(info).first);
  }
  return "gap";
}

// Writes `space` and checks the text reads without a warning; returns the
// space it reads into.
std::unique_ptr<Space> WriteAndRead(const Space& space, FrameRate rate, const std::string& what) {
  const std::string text = space.Written(rate);
  const Parsed parsed = Parse(text, rate);
  EXPECT_TRUE(parsed.warnings.empty()) << what << ": " << parsed.warnings.front();
  auto back = std::make_unique<Space>();
  back->Read(text, rate);
  return back;
}

// Frame for frame: what plays at each clip's first, last and next frame of
// either space, and at random frames, is the same in both.
void ExpectSamePlay(const Space& a, const Space& b, uint32_t fps, std::mt19937& rng,
                    const std::string& what) {
  std::vector<Carried> clips = a.Clips();
  const std::vector<Carried> more = b.Clips();
  clips.insert(clips.end(), more.begin(), more.end());
  size_t differ = 0;
  for (const Carried& c : clips) {
    const uint32_t channel = std::get<0>(c);
    const uint32_t start = std::get<1>(c);
    const uint32_t end = start + std::get<2>(c);
    for (const uint32_t f : {start, end - 1, end, start + uint32_t(rng() % std::get<2>(c))}) {
      if (PlayingAt(a, channel, f, fps) != PlayingAt(b, channel, f, fps) && differ++ == 0) {
        ADD_FAILURE() << what << ": channel " << channel << " frame " << f << ": "
                      << PlayingAt(a, channel, f, fps) << " against "
                      << PlayingAt(b, channel, f, fps);
      }
    }
  }
  EXPECT_EQ(differ, 0u) << what;
}

// Writes `space`, checks the text reads without a warning, and reads it
// into a second space, which must hold the same clips.
void ExpectRoundTrip(const Space& space, FrameRate rate, const std::string& what) {
  const std::unique_ptr<Space> read = WriteAndRead(space, rate, what);
  const Space& back = *read;
  const std::vector<Carried> before = space.Clips();
  const std::vector<Carried> after = back.Clips();
  EXPECT_EQ(before.size(), after.size()) << what;
  EXPECT_TRUE(before == after) << what << ": first difference at clip "
                               << std::distance(before.begin(),
                                                std::mismatch(before.begin(), before.end(),
                                                              after.begin(), after.end())
                                                    .first);
}

TEST(EdlWriter, RealListsComeBackClipForClip) {
  const std::filesystem::path dir = std::filesystem::path(TCS_TEST_DATA_DIR) / "edl";
  size_t files = 0;
  for (const auto& entry : std::filesystem::directory_iterator(dir)) {
    if (entry.path().extension() != ".edl") continue;
    std::ifstream in(entry.path(), std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    const FrameRate rate = tcs::cmx3600::ScanRate(text).rate;
    Space space;
    space.Read(text, rate);
    ASSERT_FALSE(space.Clips().empty()) << entry.path();
    ExpectRoundTrip(space, rate, entry.path().filename().string());
    ++files;
  }
  EXPECT_EQ(files, 21u);
}

// Random lists on every channel, aux included: events on random sets of
// channels, many starting together with the same source and differing only
// in reel, name, clip name, comment, transition or speed, come back clip
// for clip;
// after moves that lay clips over their neighbours, what plays comes back
// frame for frame.
TEST(EdlWriter, RandomSpacesComeBackClipForClip) {
  const FrameRate rates[] = {{24, false}, {25, false}, {30, true}, {30, false}, {60, true}};
  const char* const reels[] = {"", "AX", "R1", "R2", "A001C003", "a long reel name"};
  const char* const names[] = {"", "one.mov", "two.mov", " edge ", "tab\there"};
  std::mt19937 rng(1234);
  for (int round = 0; round < 20; ++round) {
    const FrameRate rate = rates[round % std::size(rates)];
    std::string text;
    tcs::cmx3600::AppendHeader(text, "random", rate);
    uint32_t at = 0;
    for (uint32_t n = 1; n <= 120; ++n) {
      tcs::cmx3600::Event e;
      if (rng() % 3 != 0) at += rng() % 200;
      e.recordIn = at;
      e.recordOut = at + 1 + rng() % 300;
      e.sourceIn = 1000 * (rng() % 4);
      e.sourceOut = e.sourceIn + (e.recordOut - e.recordIn);
      e.video = rng() % 2 ? uint32_t(rng()) & uint32_t(rng()) : 0;
      e.audio = rng() % 2 ? uint32_t(rng()) & uint32_t(rng()) : 0;
      e.aux = rng() % 3 == 0 ? uint32_t(rng()) & uint32_t(rng()) & uint32_t(rng()) : 0;
      if ((e.video | e.audio | e.aux) == 0) e.video = 1;
      e.reel = reels[rng() % std::size(reels)];
      e.name = names[rng() % std::size(names)];
      e.clipName = rng() % 4 == 0 ? "c1" : "";
      e.comment = rng() % 4 == 0 ? "note\nsecond" : "";
      e.transition = rng() % 4 == 0;
      e.effectCode = e.transition && rng() % 2 ? 1 + rng() % 20 : 0;
      e.effectDuration = e.transition ? rng() % 40 : 0;
      if (rng() % 5 == 0) {
        const int32_t speeds[] = {0, 12500, -25000, 60000, 30000};
        e.hasSpeed = true;
        e.speedMilliFps = speeds[rng() % std::size(speeds)];
        e.speedEntry = e.sourceIn;
      }
      // Source timecodes counted otherwise from here on, also above the
      // first event.
      if (tcs::timecode::CanDropFrame(rate.fps) && rng() % 6 == 0) {
        tcs::cmx3600::AppendFrameCode(text, rng() % 2 == 0);
      }
      tcs::cmx3600::AppendEvent(text, e, n, rate);
    }
    Space space;
    space.Read(text, rate);
    ExpectRoundTrip(space, rate, "round " + std::to_string(round));
    for (int m = 0; m < 10; ++m) {
      const std::vector<Carried> clips = space.Clips();
      const Carried& c = clips[rng() % clips.size()];
      if (std::get<0>(c) >= 64) continue;
      tcs::host::EditRequest move;
      move.kind = tcs::host::EditKind::kMove;
      (std::get<0>(c) < 32 ? move.videoMask : move.audioMask) = 1u << (std::get<0>(c) % 32);
      move.a = std::get<1>(c);
      move.b = std::get<1>(c) + rng() % 300;
      if (tcs::host::Problem(move) || tcs::host::ProblemIn(space.get(), move)) continue;
      TCSCMD cmd = tcs::host::Record(move);
      tcsSetMode(space.get(), &cmd);
    }
    // A moved clip lies over its neighbours; what plays must come back.
    const std::unique_ptr<Space> back = WriteAndRead(space, rate, "moved");
    ExpectSamePlay(space, *back, rate.fps, rng, "round " + std::to_string(round) + " moved");
  }
}

// Clips that start together with the same source differ in one thing each;
// every one must come back with its own reel, name, clip name and comment,
// and channels that agree in everything share one event.
TEST(EdlWriter, JoinsOnlyClipsThatAgreeInEverything) {
  const FrameRate rate{25, false};
  const std::string list =
      "TITLE: Same source\r\n"
      "001  R1       V     C        01:00:00:00 01:00:04:00 00:00:00:00 00:00:04:00\r\n"
      "002  R2       A     C        01:00:00:00 01:00:04:00 00:00:00:00 00:00:04:00\r\n"
      "003  R1       V     C        01:00:00:00 01:00:04:00 00:00:00:00 00:00:04:00\r\n"
      "* TCS TRACKS: V2\r\n"
      "* FROM CLIP NAME: other\r\n"
      "004  R1       NONE  C        01:00:00:00 01:00:04:00 00:00:00:00 00:00:04:00\r\n"
      "* TCS TRACKS: V3 A3\r\n"
      "* TCS AUX: X1 X32\r\n"
      "005  R1       NONE  C        01:00:00:00 01:00:04:00 00:00:00:00 00:00:04:00\r\n"
      "* TCS TRACKS: V4\r\n"
      "* COMMENT: differs\r\n";
  Space space;
  space.Read(list, rate);
  ASSERT_EQ(space.Clips().size(), 8u);
  const std::string text = space.Written(rate, "Same source");
  // V1 with V3, A3, X1 and X32; the rest alone.
  EXPECT_EQ(Parse(text, rate).events, 4u) << text;
  EXPECT_NE(text.find("TITLE: Same source\r\n"), std::string::npos);
  ExpectRoundTrip(space, rate, "same source");
}

// Notes the reader keeps as comment lines go back as they were written:
// bare remarks bare and COMMENT: lines under their label, in their order;
// a comment line that would read as something else (a name, a note of the
// codec's own) stays a COMMENT: line.
TEST(EdlWriter, NotesGoBackAsTheyWere) {
  const FrameRate rate{24, false};
  const std::string notes =
      "* SOURCE FILE: /media/r1.mov\r\n"
      "* LOC: 00:00:01:00 RED marker\r\n"
      "* COMMENT: FROM CLIP NAME: not a name\r\n"
      "* COMMENT: plain words\r\n"
      "* COMMENT: TCS REEL: not a reel\r\n"
      "* A BARE REMARK THAT A TOOL WRAPPED OVER\r\n"
      "* TWO LINES\r\n"
      "* COMMENT: labelled again\r\n";
  Space space;
  space.Read("TITLE: Notes\r\n"
             "001  R1       V     C        01:00:00:00 01:00:04:00 00:00:00:00 00:00:04:00\r\n" +
                 notes,
             rate);
  const std::string text = space.Written(rate);
  EXPECT_EQ(text.substr(text.find("* SOURCE FILE")), notes);
  ExpectRoundTrip(space, rate, "notes");
}

// A transition goes out in the two lines editors write: a cut of no length
// into where the clip before it left off (black, BL, where nothing plays up
// to it), then the transition, its notes naming both clips.
TEST(EdlWriter, TransitionsGoOutWithTheirOutgoingSource) {
  const FrameRate rate{25, false};
  const std::string list =
      "001  R1       V     C        01:00:00:00 01:00:04:00 00:00:00:00 00:00:04:00\r\n"
      "* FROM CLIP NAME: one\r\n"
      "002  R1       V     D    025 02:00:00:00 02:00:02:00 00:00:04:00 00:00:06:00\r\n"
      "* FROM CLIP NAME: two\r\n"
      "003  R3       V     W001 010 03:00:00:00 03:00:01:00 00:00:10:00 00:00:11:00\r\n";
  Space space;
  space.Read(list, rate);
  const std::string text = space.Written(rate);
  for (const char* line :
       {"002  R1       V     C        01:00:04:00 01:00:04:00 00:00:04:00 00:00:04:00\r\n"
        "002  R1       V     D    025 02:00:00:00 02:00:02:00 00:00:04:00 00:00:06:00\r\n"
        "* FROM CLIP NAME: one\r\n* TO CLIP NAME: two\r\n",
        "003  BL       V     C        00:00:00:00 00:00:00:00 00:00:10:00 00:00:10:00\r\n"
        "003  R3       V     W001 010 03:00:00:00 03:00:01:00 00:00:10:00 00:00:11:00\r\n"}) {
    EXPECT_NE(text.find(line), std::string::npos) << line << " in\n" << text;
  }
  const Parsed parsed = Parse(text, rate);
  EXPECT_EQ(parsed.events, 3u);
  EXPECT_TRUE(parsed.warnings.empty()) << parsed.warnings.front();
  using Outgoing = std::tuple<std::string, uint32_t, std::string>;
  EXPECT_EQ(parsed.outgoing, (std::vector<Outgoing>{{"R1", 90100, "one"}, {"BL", 0, ""}}));
  ExpectRoundTrip(space, rate, "transitions");
}

// A list that names a transition's outgoing clip otherwise than the clip
// that plays before it (or where black does) keeps the name: the incoming
// clip's comment ends in the FROM CLIP NAME note, which the writer gives
// back as the outgoing clip's name, once. A name the clip before has, as a
// note spells it, adds nothing.
TEST(EdlWriter, TransitionsKeepTheOutgoingNameTheListGave) {
  const FrameRate rate{25, false};
  const std::string list =
      "001  R1       V     C        01:00:00:00 01:00:04:00 00:00:00:00 00:00:04:00\r\n"
      "* FROM CLIP NAME:  one\t\r\n"
      "002  R1       V     C        01:00:04:00 01:00:04:00 00:00:04:00 00:00:04:00\r\n"
      "002  R2       V     D    025 02:00:00:00 02:00:02:00 00:00:04:00 00:00:06:00\r\n"
      "* FROM CLIP NAME: not one\r\n"
      "* TO CLIP NAME: two\r\n"
      "* A REMARK\r\n"
      "003  BL       V     C        00:00:00:00 00:00:00:00 00:00:10:00 00:00:10:00\r\n"
      "003  R3       V     D    010 03:00:00:00 03:00:01:00 00:00:10:00 00:00:11:00\r\n"
      "* FROM CLIP NAME: ghost\r\n"
      "* TO CLIP NAME: three\r\n"
      "004  R3       V     C        03:00:01:00 03:00:01:00 00:00:11:00 00:00:11:00\r\n"
      "004  R4       V     D    010 04:00:00:00 04:00:01:00 00:00:11:00 00:00:12:00\r\n"
      "* FROM CLIP NAME: three\r\n"
      "* TO CLIP NAME: four\r\n";
  Space space;
  space.Read(list, rate);
  std::vector<std::string> comments;
  for (const Carried& clip : space.Clips()) comments.push_back(std::get<7>(clip));
  EXPECT_EQ(comments, (std::vector<std::string>{"", "A REMARK\nFROM CLIP NAME: not one",
                                                "FROM CLIP NAME: ghost", ""}));
  const std::string text = space.Written(rate);
  EXPECT_NE(text.find("* FROM CLIP NAME: not one\r\n* TO CLIP NAME: two\r\n* A REMARK\r\n0"),
            std::string::npos)
      << text;
  const Parsed parsed = Parse(text, rate);
  using Outgoing = std::tuple<std::string, uint32_t, std::string>;
  EXPECT_EQ(parsed.outgoing, (std::vector<Outgoing>{{"R1", 90100, "not one"},
                                                    {"BL", 0, "ghost"},
                                                    {"R3", 270025, "three"}}));
  ExpectRoundTrip(space, rate, "outgoing names");
}

// Source timecodes counted otherwise than the record timecodes (an FCM:
// line above their event) go back so: an FCM: line before each event whose
// counting differs from the one in force, the first event's included, and
// the list's own counting of its record timecodes stays.
TEST(EdlWriter, FrameCodeLinesGoBackBeforeTheEventsTheyCount) {
  const FrameRate ndf = tcs::timecode::MakeFrameRate(30, false);
  const std::string list =
      "TITLE: Mixed tapes\r\n"
      "FCM: NON-DROP FRAME\r\n"
      "* TCS FRAME RATE: 30\r\n"
      "FCM: DROP FRAME\r\n"
      "001  R1       V     C        01:10:00;02 01:10:01;02 00:00:00:00 00:00:01:00\r\n"
      "002  R2       V     C        01:10:00;02 01:10:01;02 00:00:01:00 00:00:02:00\r\n"
      "FCM: NON-DROP FRAME\r\n"
      "003  R3       V     C        01:10:00:02 01:10:01:02 00:00:02:00 00:00:03:00\r\n";
  Space space;
  space.Read(list, ndf);
  std::vector<uint32_t> sources;
  for (const Carried& clip : space.Clips()) sources.push_back(std::get<3>(clip).front());
  // 70 minutes drop 126 frames; a non-drop label counts them all.
  EXPECT_EQ(sources, (std::vector<uint32_t>{125876, 125876, 126002}));
  const std::string text = space.Written(ndf, "Mixed tapes");
  EXPECT_NE(text.find("* TCS FRAME RATE: 30\r\n\r\nFCM: DROP FRAME\r\n001  R1       V     C        "
                      "01:10:00;02 01:10:01;02 00:00:00:00 00:00:01:00\r\n002"),
            std::string::npos)
      << text;
  EXPECT_NE(text.find("FCM: NON-DROP FRAME\r\n003  R3       V     C        01:10:00:02"),
            std::string::npos)
      << text;
  ExpectRoundTrip(space, ndf, "mixed tapes");
  // Read at drop-frame (the record timecodes too), the same list's first two
  // events count as the list and need no FCM: line of their own.
  const FrameRate df = tcs::timecode::MakeFrameRate(30, true);
  Space dropped;
  dropped.Read(list, df);
  EXPECT_EQ(dropped.Written(df).find("FCM: DROP FRAME\r\n001"), std::string::npos);
  ExpectRoundTrip(dropped, df, "mixed tapes, drop-frame list");
}

// A speed clip cut at its head goes out from the source frame it starts on,
// its M2 entry there, wherever the frames cut make whole source frames at
// its speed; every frame plays as before either way.
TEST(EdlWriter, SpeedClipsCutAtTheHeadEnterWhereTheyStart) {
  const FrameRate rate{25, false};
  std::mt19937 rng(77);
  for (const char* speed : {"050.0", "012.5", "-025.0", "000.0", "037.5", "-006.2"}) {
    for (int round = 0; round < 12; ++round) {
      const uint32_t cut = 1 + rng() % 20;
      char cover[128];
      std::snprintf(cover, sizeof cover,
                    "002  R2       V     C        02:00:00:00 02:00:00:%02u 00:00:10:00 00:00:10:%02u\r\n",
                    cut, cut);
      const std::string list =
          std::string("001  R1       V     C        01:00:00:00 01:00:04:00 00:00:10:00 00:00:14:00\r\n"
                      "M2   R1       ") + speed + "                01:00:00:00\r\n" + cover;
      Space space;
      space.Read(list, rate);
      const std::string text = space.Written(rate);
      struct Head {
        uint32_t sourceIn = 0, entry = 0;
        int32_t milli = 0;
        bool speed = false;
      } head;
      tcs::cmx3600::EventReader reader(
          {rate},
          [](void* h, const tcs::cmx3600::Event& e) {
            if (!e.hasSpeed) return;
            *static_cast<Head*>(h) = {e.sourceIn, e.speedEntry, e.speedMilliFps, true};
          },
          [](void*, const tcs::cmx3600::Warning&) {}, &head);
      ASSERT_TRUE(reader.Read(text));
      ASSERT_TRUE(head.speed) << text;
      const int64_t scaled = int64_t(cut) * head.milli;
      const std::string what = std::string(speed) + " cut " + std::to_string(cut);
      if (scaled % 25000 == 0) {
        EXPECT_EQ(head.entry, head.sourceIn) << what << "\n" << text;
        EXPECT_EQ(int64_t(head.sourceIn), 90000 + scaled / 25000) << what;
      } else {
        EXPECT_EQ(head.entry, 90000u) << what;
        EXPECT_EQ(head.sourceIn, 90000u + cut) << what;
      }
      const std::unique_ptr<Space> back = WriteAndRead(space, rate, what);
      for (uint32_t f = 250 + cut; f < 350; ++f) {
        ASSERT_EQ(PlayingAt(space, 0, f, rate.fps), PlayingAt(*back, 0, f, rate.fps))
            << what << " frame " << f;
      }
    }
  }
}

}  // namespace
