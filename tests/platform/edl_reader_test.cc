// The EDL reader on texts laid out as other tools write them, on broken
// texts, and on what the writer makes of random lines.
#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/edl_text_events.h"
#include "platform/edl_text_format.h"
#include "support/log_capture.h"
#include "tcs_status.h"

namespace tcs::translator {
namespace {

// An EDLLINE with its texts held by value.
struct Event {
  uint32_t sourceIn, sourceOut, recordIn, recordOut, video, audio, code, duration;
  std::string reel, name, comment, clipName;
  uint8_t transition = EDLLINE_CUT;
  bool operator==(const Event&) const = default;
};

std::string Str(const char* text) { return text == nullptr ? "" : text; }

void Collect(void* context, const EDLLINE& line, uint64_t) {
  static_cast<std::vector<Event>*>(context)->push_back(
      {line.clip.sourceIn, line.clip.sourceOut, line.recordIn, line.recordOut, line.clip.videoMask,
       line.clip.audioMask, line.effectCode, line.effectDuration, Str(line.clip.reel),
       Str(line.clip.name), Str(line.clip.comment), Str(line.clip.clipName), line.transition});
}

std::vector<Event> Read(const std::string& text, uint32_t& status, TimecodeRate rate = {}) {
  std::vector<Event> events;
  EdlEventReader reader(rate, "test.edl", &Collect, &events);
  status = reader.Read(text);
  return events;
}

constexpr uint32_t kHour = 108000;  // at 30 frames per second

TEST(EdlReader, ReadsWhatOtherToolsWrite) {
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
  const std::vector<Event> expected = {
      {0, 150, kHour, kHour + 150, 1, 0, 0, 0, "AX", "Interview_A.mov",
       "SOURCE FILE: /media/Interview_A.mov", ""},
      {300, 360, kHour + 150, kHour + 210, 1, 0xF, 0, 0, "AX", "Broll 2.mov",
       "LOC: 01:00:06:00 RED     check this\nASC_SOP (1.0 1.0 1.0)(0.0 0.0 0.0)(1.0 1.0 1.0)\n"
       "ASC_SAT 1.0", ""},
      {2 * kHour, 2 * kHour + 90, kHour + 210, kHour + 300, 1, 0, 0, 30, "TAPE02", "incoming.mov",
       "EFFECTS NAME IS CROSS DISSOLVE", "", EDLLINE_WIPE},
      {0, 60, kHour + 300, kHour + 360, 0, 1, 0, 0, "AX", "slow.wav", "FROM CLIP: C:\\Media\\slow.wav",
       ""},
      {60, 90, kHour + 360, kHour + 390, 1, 2, 0, 12, "AX", "", "", "", EDLLINE_WIPE},
      {0, 30, kHour + 390, kHour + 420, 1, 1, 2, 45, "R2", "", "a note of the editor", "",
       EDLLINE_WIPE},
  };
  tcs_test::LogCapture log;
  uint32_t status = 1;
  EXPECT_EQ(Read(crlf_tool, status), expected);
  EXPECT_EQ(status, TCS_OK);
  // M2 and SPLIT are warned about with their line numbers.
  const std::vector<std::string> lines = log.Lines();
  ASSERT_EQ(lines.size(), 2u);
  EXPECT_NE(lines[0].find("line 20"), std::string::npos);
  EXPECT_NE(lines[1].find("line 29"), std::string::npos);

  // Drop-frame, six-digit event numbers, a reel of eight run into its track,
  // timecodes run together, FCM changing mid-file, lower case, LF and CR.
  const std::string df_tool =
      "title: df\n"
      "fcm: drop frame\n"
      "000001  ABCDEFG.V     w001 015 00:00:59;28 00:01:00;12 00:10:00;00 00:10:00;12\n"
      "000002  reel_1   a2    d    010 00:00:00;00 00:00:01;00 00:10:00;12 00:10:01;12\r"
      "FCM: NON-DROP FRAME\n"
      "000003  BL       NONE  C        00:00:00:00 00:00:01:00 00:20:00:00 00:20:01:00\n"
      "4 X1 A12 C 00:00:00:0000:00:02:00 00:30:00:0000:30:02:00\n";
  const std::vector<Event> df_expected = {
      {1798, 1810, 17982, 17994, 1, 0, 1, 15, "ABCDEFG.", "", "", "", EDLLINE_WIPE},
      {0, 30, 17994, 18024, 0, 2, 0, 10, "reel_1", "", "", "", EDLLINE_WIPE},
      {0, 30, 36000, 36030, 0, 0, 0, 0, "BL", "", "", ""},
      {0, 60, 54000, 54060, 0, 0x800, 0, 0, "X1", "", "", ""},
  };
  EXPECT_EQ(Read(df_tool, status), df_expected);
  EXPECT_EQ(status, TCS_OK);
}

// A bad line stops the reading with its line number in the log; the events
// before it stay, an event whose notes the bad line may belong to does not.
TEST(EdlReader, StopsAtTheFirstBadLine) {
  const std::string good =
      "001  AX       V     C        00:00:00:00 00:00:01:00 00:00:00:00 00:00:01:00\n"
      "002  AX       V     C        00:00:01:00 00:00:02:00 00:00:01:00 00:00:02:00\n"
      "* FROM CLIP NAME: second\n";
  struct Case {
    const char* bad;
    size_t kept;  // events handed on
  };
  const Case cases[] = {
      {"003  AX       V     C        00:00:00:00 00:00:01:00 00:00:02:00", 2},
      {"003  AX       V     X        00:00:00:00 00:00:01:00 00:00:02:00 00:00:03:00", 2},
      {"003  AX       Q     C        00:00:00:00 00:00:01:00 00:00:02:00 00:00:03:00", 2},
      {"003  AX       V     C        00:00:00:30 00:00:01:00 00:00:02:00 00:00:03:00", 2},
      {"003  AX       V     C        00:00:00:00 00:00:01:00 00:00:03:00 00:00:02:00", 2},
      {"003  AX       V     C        00:00:00:00 00:00:01:00 99999:00:00:00 99999:00:00:10", 2},
      {"AUD 3 x", 1},
      {"this line is not EDL", 1},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.bad);
    tcs_test::LogCapture log;
    uint32_t status = 0;
    const std::vector<Event> events =
        Read(good + c.bad + "\n004  AX  V  C  00:00:00:00 00:00:01:00 00:00:09:00 00:00:10:00\n",
             status);
    EXPECT_EQ(status, TCS_ERR_BAD_ARGUMENTS);
    ASSERT_EQ(events.size(), c.kept);
    EXPECT_EQ(events.back().recordIn, 30u * (c.kept - 1));
    ASSERT_FALSE(log.Lines().empty());
    EXPECT_NE(log.Lines()[0].find("test.edl) line 4"), std::string::npos) << log.Lines()[0];
  }
}

// A name longer than an export carries is cut as the export would cut it, so
// that the file's clips are told apart by what an export of them keeps.
TEST(EdlReader, CutsANameToWhatAnExportCarries) {
  const std::string text = "001  AX       V     C        00:00:00:00 00:00:01:00 00:00:00:00 00:00:01:00\n"
                           "* FROM CLIP NAME: " + std::string(5000, 'n') + "\n";
  uint32_t status = 1;
  const std::vector<Event> read = Read(text, status);
  ASSERT_EQ(read.size(), 1u);
  EXPECT_EQ(read[0].name, std::string(EDLLINE_NAME_MAX, 'n'));
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
TEST(EdlReader, ReadsBackWhatTheWriterWrites) {
  std::mt19937 rng(301);
  const TimecodeRate rates[] = {MakeRate(24, false), MakeRate(25, false), MakeRate(30, false),
                                MakeRate(30, true), MakeRate(60, true)};
  for (int round = 0; round < 40; ++round) {
    SCOPED_TRACE(round);
    const TimecodeRate rate = rates[round % std::size(rates)];
    std::vector<Event> written;
    std::string text;
    AppendHeader(text, "round trip", rate);
    for (uint32_t n = 1; n <= 50; ++n) {
      EDLLINE line{};
      const uint32_t length = 1 + rng() % 5000;
      line.clip.sourceIn = rng() % 2 ? rng() % 3000000 : rng() - length;
      line.clip.sourceOut = line.clip.sourceIn + length;
      line.recordIn = rng() % 10000000;
      line.recordOut = line.recordIn + length;
      line.clip.videoMask = rng() % 3 == 0 ? uint32_t(rng()) : rng() & 0xF;
      line.clip.audioMask = rng() % 3 == 0 ? uint32_t(rng()) : rng() & rng() & 0xFFFF;
      const uint32_t kind = rng() % 4;
      line.transition = kind == 0 ? EDLLINE_CUT : EDLLINE_WIPE;
      line.effectCode = kind == 1 ? 0 : kind == 2 ? rng() % 1000 : rng() % 3 ? 0 : rng();
      line.effectDuration = kind == 0 && rng() % 2 ? 0 : rng() % 2 ? rng() % 100 : rng();
      const char* const reels[] = {"", "AX", "A001C00.", "REEL 12", "A_VERY_LONG_REEL_NAME_1"};
      std::string name = RandomName(rng), comment = RandomText(rng, 8, true),
                  clip_name = RandomText(rng, 1, false).substr(0, 8);
      line.clip.reel = const_cast<char*>(reels[rng() % std::size(reels)]);
      line.clip.name = name.data();
      line.clip.comment = comment.data();
      line.clip.clipName = clip_name.data();
      AppendEvent(text, line, n, rate);
      Collect(&written, line, 0);
    }
    uint32_t status = 1;
    const std::vector<Event> read = Read(text, status, MakeRate(30, false));
    EXPECT_EQ(status, TCS_OK);
    ASSERT_EQ(read.size(), written.size());
    for (size_t i = 0; i < read.size(); ++i) {
      ASSERT_EQ(read[i], written[i]) << "event " << i + 1 << " in\n" << text;
    }
  }
}

}  // namespace
}  // namespace tcs::translator
