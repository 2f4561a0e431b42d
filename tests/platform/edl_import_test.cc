// The translator's read from memory: the reader's events reach the space,
// its warnings reach the caller's callback as data (and the log only without
// one), strict mode stops where the text cannot be read, and the space's own
// rules (the timeline's end, the name an export carries) are applied and
// said.
#include <cstring>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support/log_capture.h"
#include "support/test_clips.h"
#include "tcs.h"

namespace {

struct Seen {
  std::vector<EDLWARNING> warnings;  // texts not kept
  std::vector<std::string> texts;
  std::vector<std::string> names;    // of the clips added
};

void OnWarning(void* context, const EDLWARNING* warning) {
  auto& seen = *static_cast<Seen*>(context);
  seen.warnings.push_back(*warning);
  seen.texts.emplace_back(warning->text);
}

unsigned int OnAdd(void* context, CTimeCodeSpace*, CClip* clip) {
  static_cast<Seen*>(context)->names.emplace_back(clip->name != nullptr ? clip->name : "");
  return 0;
}

uint32_t ReadText(const std::string& text, const EDLSETTINGS* settings, Seen& seen, bool callback) {
  tcs_test::OpenedSpace space;
  tcsSetAddCallback(space.get(), &seen, &OnAdd);
  return edlReadText(space.get(), text.data(), text.size(), settings,
                     callback ? &OnWarning : nullptr, &seen);
}

TEST(EdlReadText, WarningsAsDataStrictModeAndTheSpacesRules) {
  const std::string text =
      "001  AX  V  C  00:00:00:00 00:00:01:00 00:00:00:00 00:00:01:00\n"
      "* FROM CLIP NAME: " + std::string(5000, 'n') + "\n"
      "not an EDL line\n"
      "002  AX  V  C  00:00:00:00 00:00:10:00 98:59:59:00 99:00:09:00\n";
  Seen seen;
  {
    tcs_test::LogCapture log;
    EXPECT_EQ(ReadText(text, nullptr, seen, true), 0u);
    EXPECT_TRUE(log.Lines().empty());
  }
  ASSERT_EQ(seen.names.size(), 2u);
  EXPECT_EQ(seen.names[0], std::string(EDLLINE_NAME_MAX, 'n'));
  // An event's own warnings come when it ends, at the next event line.
  const std::vector<std::pair<uint32_t, uint32_t>> expected = {{3, 1}, {1, 20}, {4, 19}};
  std::vector<std::pair<uint32_t, uint32_t>> got;
  for (const EDLWARNING& w : seen.warnings) {
    got.emplace_back(w.line, w.kind);
    EXPECT_EQ(w.fatal, 0u);
  }
  EXPECT_EQ(got, expected);
  EXPECT_EQ(seen.texts[0], "not an EDL line: skipped");

  // Strict: the warning that stops the read is marked, and the event the bad
  // line may belong to is not added; without a callback the stop is logged
  // as edlReadFile logs it.
  EDLSETTINGS strict;
  edlInitSettings(&strict, 30, 0);
  strict.strict = 1;
  Seen stopped;
  EXPECT_EQ(ReadText(text, &strict, stopped, true), TCS_ERR_BAD_ARGUMENTS);
  EXPECT_TRUE(stopped.names.empty());
  ASSERT_EQ(stopped.warnings.size(), 1u);
  EXPECT_EQ(stopped.warnings[0].line, 3u);
  EXPECT_EQ(stopped.warnings[0].fatal, 1u);
  Seen logged;
  tcs_test::LogCapture log;
  EXPECT_EQ(ReadText(text, &strict, logged, false), TCS_ERR_BAD_ARGUMENTS);
  ASSERT_EQ(log.Lines().size(), 1u);
  EXPECT_NE(log.Lines()[0].find("edlReadText line 3: not an EDL line"), std::string::npos)
      << log.Lines()[0];

  EXPECT_EQ(edlReadText(nullptr, text.data(), text.size(), nullptr, nullptr, nullptr),
            TCS_ERR_NULL_SPACE);
  tcs_test::OpenedSpace space;
  EXPECT_EQ(edlReadText(space.get(), nullptr, 4, nullptr, nullptr, nullptr), TCS_ERR_BAD_ARGUMENTS);
  EXPECT_EQ(edlReadText(space.get(), nullptr, 0, nullptr, nullptr, nullptr), 0u);
}

}  // namespace

namespace {

CClip* ClipAt(CTimeCodeSpace* space, uint32_t frame, uint32_t* source) {
  CClip* clip = nullptr;
  *source = tcsTranslate(space, 0, frame, &clip, 0);
  return clip;
}

// An M2 speed stays with its clip, also with both halves of a clip a later
// event splits, and the clip library plays the source it says: half speed,
// reverse, a freeze frame, rounded down.
// The rate a read counts at: the settings', any whole rate up to 120 (three-
// digit frame fields from 100 on), or, asked to find it, the one the text
// gives, said with where it came from; a list's own rate note still sets the
// rate of what follows it.
TEST(EdlReadText, CountsAtTheRateGivenOrTheOneItFinds) {
  struct Case {
    const char* list;
    uint32_t fps;  // given; 0: found
    uint32_t expectFps, expectDrop, source, highest;
    uint32_t recordOut;  // of the first event
  };
  const char* const kEvent = "001  AX  V  C  00:00:00:00 00:00:01:50 00:00:00:00 00:00:01:50\n";
  const std::string drop = std::string("FCM: DROP FRAME\n") +
                           "001  AX  V  C  00:00:00:00 00:01:00:02 00:00:00:00 00:01:00:02\n";
  const std::string own = std::string("* TCS FRAME RATE: 100\n") + kEvent;
  const Case cases[] = {
      {kEvent, 100, 100, 0, EDL_RATE_GIVEN, 0, 150},
      {kEvent, 120, 120, 0, EDL_RATE_GIVEN, 0, 170},
      {kEvent, 121, 30, 0, EDL_RATE_GIVEN, 0, 80},
      {kEvent, 0, 60, 0, EDL_RATE_FRAME_FIELDS, 50, 110},
      {drop.c_str(), 0, 30, 1, EDL_RATE_DROP_FRAME, 2, 1800},
      {own.c_str(), 0, 100, 0, EDL_RATE_OWN_NOTE, 50, 150},
      {"TITLE: none\n", 0, 30, 0, EDL_RATE_NO_EVENTS, 0, 0},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string(c.list) + " at " + std::to_string(c.fps));
    EDLSETTINGS settings;
    edlInitSettings(&settings, c.fps, 0);
    settings.findRate = c.fps == 0 ? 1 : 0;
    tcs_test::OpenedSpace space;
    EDLREADRATE rate{};
    ASSERT_EQ(edlReadTextRate(space.get(), c.list, std::strlen(c.list), &settings,
                              [](void*, const EDLWARNING*) {}, nullptr, &rate),
              0u);
    EXPECT_EQ(rate.framesPerSecond, c.expectFps);
    EXPECT_EQ(rate.dropFrame, c.expectDrop);
    EXPECT_EQ(rate.source, c.source);
    EXPECT_EQ(rate.highestFrame, c.highest);
    EXPECT_EQ(rate.eventLines, c.fps == 0 && c.recordOut != 0 ? 1u : 0u);
    TCSCLIP row;
    unsigned int count = 0;
    unsigned int next = 0;
    ASSERT_EQ(tcsGetClips(space.get(), 0, 0, TCS_NO_TIMECODE, &row, 1, &count, &next), 0u);
    EXPECT_EQ(count == 1 ? row.start + row.length : 0, c.recordOut);
  }
}

TEST(EdlReadText, SpeedsStayWithTheirClipsThroughEdits) {
  const std::string text =
      "001  AX  V  C  00:00:00:00 00:00:01:00 00:00:00:00 00:00:02:00\n"
      "M2   AX       015.0                00:00:00:00\n"
      "002  BX  V  C  00:00:10:00 00:00:10:05 00:00:00:20 00:00:00:25\n"
      "003  CX  V  C  00:01:00:00 00:01:01:00 00:00:03:00 00:00:04:00\n"
      "M2   CX      -030.0                00:01:00:00\n"
      "004  DX  V  C  00:02:00:00 00:02:00:01 00:00:05:00 00:00:06:00\n"
      "M2   DX       000.0                00:02:00:00\n";
  tcs_test::OpenedSpace space;
  Seen seen;
  ASSERT_EQ(edlReadText(space.get(), text.data(), text.size(), nullptr, &OnWarning, &seen), 0u);
  struct Case {
    uint32_t frame, played;
    bool speed;
  };
  // 001 plays source 0 on at 15 of 30 frames a second; 002 cuts it in two.
  for (const Case& c : {Case{0, 0, true}, Case{19, 9, true}, Case{22, 300 + 2, false},
                        Case{25, 12, true}, Case{59, 29, true}, Case{90, 1800, true},
                        Case{119, 1800 - 29, true}, Case{150, 3600, true}, Case{179, 3600, true}}) {
    SCOPED_TRACE(c.frame);
    uint32_t source = 0;
    CClip* clip = ClipAt(space.get(), c.frame, &source);
    ASSERT_NE(clip, nullptr);
    EXPECT_EQ(clsGetClipSpeed(clip, nullptr, nullptr), c.speed ? 1 : 0);
    EXPECT_EQ(clsPlayedSource(clip, source, 30), c.played);
  }
  int32_t milli = 0;
  uint32_t entry = 7;
  uint32_t source = 0;
  ASSERT_EQ(clsGetClipSpeed(ClipAt(space.get(), 100, &source), &milli, &entry), 1);
  EXPECT_EQ(milli, -30000);
  EXPECT_EQ(entry, 1800u);
}

}  // namespace
