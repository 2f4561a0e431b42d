// Edit commands through tcsSetMode, checked by the timeline they leave.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "support/command_record.h"
#include "support/log_capture.h"
#include "support/test_clips.h"
#include "tcs.h"

namespace {

using tcs_test::NewCommand;
using tcs_test::PlaySpan;
using tcs_test::PlaySpans;
using Spans = std::vector<PlaySpan>;
using Lines = std::vector<std::string>;

constexpr uint32_t kMarks = TCSF_POS | TCSF_IN | TCSF_OUT;
constexpr uint32_t kNone = 0xFFFFFFFFu;

// Channels 0, 1 and 32 each hold A, B and Z; Z lies between 10692000 - 100
// and the last start an edit gives (10692000).
const PlaySpan kA{100, 100, 1000}, kB{300, 100, 2000}, kZ{10691950, 10, 9000};
const Spans kInitial = {kA, kB, kZ};

struct Timeline {
  Timeline() {
    log.Install(space.get());  // a file insert needs the add notification
    for (uint32_t channel : {0, 1, 32}) {
      for (const PlaySpan& s : kInitial) {
        auto clip = tcs_test::MakeClip(s.start, s.length, s.source_in);
        EXPECT_EQ(tcsAddClip(space.get(), clip.get(), channel), 0u);
      }
    }
  }
  tcs_test::NotificationLog log;  // outlives the space, which reports to it on close
  tcs_test::OpenedSpace space;
};

enum Outcome { kDone, kRefused, kSpaceRefused };

struct EditRow {
  const char* what;
  uint32_t command, flags, position, in, out;
  Spans masked;  // channels 0 and 32 afterwards (ignored unless kDone)
  Outcome outcome = kDone;
  bool every_channel = false;  // channel 1, named by no mask, is edited too
  const char* long_text = "";
};

// Every form of every edit command, with videoMask 1 and audioMask 1.
TEST(EditCommands, EachFormBecomesItsSpaceEdit) {
  const Spans blanked = {{100, 50, 1000}, kZ};  // [150, 450): A cut, B gone
  const std::vector<EditRow> rows = {
      {"clip, IN", TCSCMD_INSERT, TCSF_TEXT | TCSF_IN, 1000, 10, 60, {kA, kB, {1000, 50, 10}, kZ},
       kDone, false, "clip"},
      {"clip, AT", TCSCMD_INSERT, TCSF_TEXT | TCSF_AT, 1000, 10, 60, {kA, kB, {1000, 50, 10}, kZ},
       kDone, false, "clip"},
      // [120, 150) splits A; the right-hand piece plays on from source 1050.
      {"clip, OUT", TCSCMD_INSERT, TCSF_TEXT | TCSF_OUT, 120, 0, 30,
       {{100, 20, 1000}, {120, 30, 0}, {150, 50, 1050}, kB, kZ}, kDone, false, "clip"},
      {"clip, POS alone", TCSCMD_INSERT, TCSF_TEXT | TCSF_POS, 1000, 10, 60, {}, kRefused, false,
       "clip"},
      {"clip, in none", TCSCMD_INSERT, TCSF_TEXT | TCSF_IN, 1000, kNone, 60, {}, kRefused, false,
       "clip"},
      {"clip, out none", TCSCMD_INSERT, TCSF_TEXT | TCSF_OUT, 1000, 10, kNone, {}, kRefused, false,
       "clip"},
      {"insert, ripple", TCSCMD_INSERT, kMarks | TCSF_RIPPLE, 0, 150, 160,
       {kA, {311, 100, 2000}, {10691961, 10, 9000}}},
      {"insert blanks", TCSCMD_INSERT, kMarks, 0, 150, 450, blanked},
      {"TEXT, empty longText", TCSCMD_INSERT, TCSF_TEXT | kMarks, 0, 150, 450, blanked},
      {"insert, no POS", TCSCMD_INSERT, TCSF_IN | TCSF_OUT, 0, 150, 450, {}, kRefused},
      {"clear", TCSCMD_CLEAR, kMarks, 0, 150, 450, blanked},
      {"clear, ripple", TCSCMD_CLEAR, kMarks | TCSF_RIPPLE, 0, 150, 450,
       {{100, 50, 1000}, {10691650, 10, 9000}}},
      // out past the end becomes 10692000 - in = 10691900, short of Z.
      {"clear past the end", TCSCMD_CLEAR, kMarks, 0, 100, 10692001, {kZ}},
      {"clear past the end, ripple", TCSCMD_CLEAR, kMarks | TCSF_RIPPLE, 0, 100, 10692001,
       {{150, 10, 9000}}},
      {"clear all", TCSCMD_CLEAR, TCSF_ALL, 0, 0, 0, {}, kDone, true},
      {"clear all, ripple", TCSCMD_CLEAR, TCSF_ALL | TCSF_RIPPLE, 0, 0, 0, {}, kDone, true},
      {"clear, marks win over ALL", TCSCMD_CLEAR, TCSF_ALL | kMarks, 0, 150, 450, blanked},
      {"clear, IN OUT", TCSCMD_CLEAR, TCSF_IN | TCSF_OUT | TCSF_RIPPLE, 0, 150, 450, {}, kRefused},
      {"delete, ripple", TCSCMD_DELETE, kMarks | TCSF_RIPPLE, 0, 200, 300,
       {kA, {200, 100, 2000}, {10691850, 10, 9000}}},
      {"delete blanks", TCSCMD_DELETE, kMarks, 0, 150, 450, blanked},
      {"delete, no POS", TCSCMD_DELETE, TCSF_IN | TCSF_OUT, 0, 200, 300, {}, kRefused},
      {"delete 100 to 50", TCSCMD_DELETE, kMarks, 0, 100, 50, {}, kSpaceRefused},
      {"trim gap", TCSCMD_TRIM, TCSF_POS | TCSF_RIPPLE, 250, 280, 0,
       {kA, {331, 100, 2000}, {10691981, 10, 9000}}},
      {"move", TCSCMD_TRIM, TCSF_POS | TCSF_AT, 300, 500, 0, {kA, {500, 100, 2000}, kZ}},
      {"move wins over IN", TCSCMD_TRIM, TCSF_POS | TCSF_AT | TCSF_IN, 300, 500, 9,
       {kA, {500, 100, 2000}, kZ}},
      {"trim in", TCSCMD_TRIM, TCSF_POS | TCSF_IN, 300, 2010, 2100, {kA, {310, 90, 2010}, kZ}},
      {"trim out", TCSCMD_TRIM, TCSF_POS | TCSF_OUT, 300, 2000, 2050, {kA, {300, 50, 2000}, kZ}},
      {"trim, POS alone", TCSCMD_TRIM, TCSF_POS, 300, 500, 600, {}, kRefused},
      {"trim, no POS", TCSCMD_TRIM, TCSF_AT | TCSF_IN | TCSF_RIPPLE, 300, 500, 600, kInitial},
      {"command 11", 11, kMarks | TCSF_RIPPLE, 0, 150, 450, kInitial},
      {"command 30", 30, kMarks | TCSF_RIPPLE, 0, 150, 450, kInitial},
  };
  for (const EditRow& row : rows) {
    SCOPED_TRACE(row.what);
    Timeline timeline;
    tcs_test::LogCapture log;
    auto record = NewCommand(row.command, row.flags);
    record->videoMask = 1;
    record->audioMask = 1;
    record->position = row.position;
    record->inPoint = row.in;
    record->outPoint = row.out;
    std::strcpy(record->longText, row.long_text);

    const uint32_t result = tcsSetMode(timeline.space.get(), record.get());
    const Spans& masked = row.outcome == kDone ? row.masked : kInitial;
    EXPECT_EQ(PlaySpans(*timeline.space, 0), masked);
    EXPECT_EQ(PlaySpans(*timeline.space, 32), masked);
    EXPECT_EQ(PlaySpans(*timeline.space, 1), row.every_channel ? masked : kInitial);
    if (row.outcome == kRefused) {
      EXPECT_EQ(result, 0xA8087013u);
      EXPECT_EQ(log.Lines(), Lines{"TCSpace(0xA8087013)"});
    } else {
      EXPECT_EQ(result, 0u);
      EXPECT_EQ(log.Lines(), row.outcome == kSpaceRefused ? Lines{"TCSpace(0xA808F013)"} : Lines{});
    }
    timeline.space->CheckInvariants();
  }
}

// The clip form puts the clip between position and position + (out - in)
// and names it from the record's texts.
TEST(EditCommands, ClipFormPlacesAndNamesTheRecord) {
  struct {
    const char* what;
    uint32_t flags, position, sub_command, in, out;
    uint32_t start, length, source_out;  // of the inserted record
    const char* text = "abc";
    const char* clip_name = "abc";  // and comment; null: none
  } const rows[] = {
      {"in before out", TCSF_IN, 1000, 0, 100, 150, 1000, 50, 150},
      {"out before in ends at position", TCSF_IN, 1000, 0, 150, 100, 950, 50, 100},
      {"ALTPOS", TCSF_IN | TCSF_ALTPOS, 1000, 2000, 100, 150, 2000, 50, 150},
      {"no ALTPOS", TCSF_IN, 1000, 2000, 100, 150, 1000, 50, 150},
      {"cut at the end", TCSF_IN, 10691990, 0, 100, 150, 10691990, 11, 150},
      {"position past the end", TCSF_IN, 20000000, 0, 0, 10, 10692000, 1, 10},
      // The end point 10 - 50 wraps above the position: start there, run to the end.
      {"end point wraps", TCSF_IN, 10, 0, 150, 100, 10, 10691991, 100},
      {"all marks bound out", kMarks, 500, 0, 100, 10692001, 500, 10691501, 10691900},
      {"IN OUT keep out", TCSF_IN | TCSF_OUT, 500, 0, 100, 10692001, 500, 10691501, 10692001},
      {"8 characters", TCSF_IN, 0, 0, 0, 10, 0, 10, 10, "abcdefgh", "abcdefgh"},
      {"empty text", TCSF_IN, 0, 0, 0, 10, 0, 10, 10, "", nullptr},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    tcs_test::NotificationLog notifications;
    tcs_test::OpenedSpace space;
    notifications.Install(space.get());
    auto record = NewCommand(TCSCMD_INSERT, TCSF_TEXT | row.flags);
    record->videoMask = 0x5;  // channels 0 and 2
    record->audioMask = 0x2;  // channel 33
    record->position = row.position;
    record->subCommand = row.sub_command;
    record->inPoint = row.in;
    record->outPoint = row.out;
    std::strcpy(record->text, row.text);
    std::strcpy(record->longText, "long name");
    ASSERT_EQ(tcsSetMode(space.get(), record.get()), 0u);

    std::vector<uint32_t> channels;
    for (const CClip* clip : tcs_test::ListedClips(*space)) {
      channels.push_back(clip->channel);
      EXPECT_EQ(PlaySpans(*space, clip->channel), (Spans{{row.start, row.length, row.in}}));
      EXPECT_EQ(clip->sourceOut, row.source_out);
      EXPECT_STREQ(clip->name, "long name");
      EXPECT_STREQ(clip->clipName, row.clip_name);
      EXPECT_STREQ(clip->comment, row.clip_name);
      EXPECT_EQ(clip->videoMask, 0x5u);
      EXPECT_EQ(clip->audioMask, 0x2u);
    }
    EXPECT_EQ(channels, (std::vector<uint32_t>{0, 2, 33}));
  }
}

// The host's record allocated with exactly `allocated` bytes: ASan fails the
// test if the edit path reads one byte past them. Text and longText are
// filled without a terminating zero.
TEST(EditCommands, NothingPastTheDeclaredSizeIsRead) {
  struct {
    uint32_t allocated, size, command, flags;
    Spans channel0;
    Lines log;
    std::string name = "";  // of the clip inserted at 150
  } const cases[] = {
      // in and out (offsets 68, 72) undeclared read as 0: the space refuses [0, 0).
      {56, 0, TCSCMD_DELETE, kMarks, kInitial, {"TCSpace(0xA808F013)"}},
      {56, 56, TCSCMD_DELETE, kMarks, kInitial, {"TCSpace(0xA808F013)"}},
      // longText (offset 85) undeclared: TCSF_TEXT falls to the range form.
      {80, 80, TCSCMD_INSERT, TCSF_TEXT | kMarks, {{100, 50, 1000}, kZ}, {}},
      // longText's first byte declared, its zero not.
      {86, 86, TCSCMD_INSERT, TCSF_TEXT | TCSF_IN, {{100, 50, 1000}, {150, 300, 150}, kZ}, {},
       "N"},
      // A whole record whose longText never ends: cut one byte short of the end.
      {4188, 4188, TCSCMD_INSERT, TCSF_TEXT | TCSF_IN, {{100, 50, 1000}, {150, 300, 150}, kZ}, {},
       std::string(4102, 'N')},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.allocated);
    Timeline timeline;
    tcs_test::LogCapture log;
    auto full = NewCommand(c.command, c.flags);
    full->size = c.size;
    full->videoMask = 1;
    full->position = 150;
    full->inPoint = 150;
    full->outPoint = 450;
    std::memset(full->text, 'T', sizeof full->text);
    std::memset(full->longText, 'N', sizeof full->longText);
    auto bytes = std::make_unique<unsigned char[]>(c.allocated);
    std::memcpy(bytes.get(), full.get(), c.allocated);
    auto* record = reinterpret_cast<TCSCMD*>(bytes.get());

    EXPECT_EQ(tcsSetMode(timeline.space.get(), record), 0u);
    EXPECT_EQ(record->size, c.size == 0 ? 56u : c.size);
    EXPECT_EQ(PlaySpans(*timeline.space, 0), c.channel0);
    EXPECT_EQ(log.Lines(), c.log);
    if (c.name.empty()) continue;
    const CClip* inserted = timeline.space->LookupOf(0)->find(150)->clip;
    EXPECT_EQ(std::string(inserted->name), c.name);
    EXPECT_EQ(std::string(inserted->comment), "TTTTTTTTT" + c.name);  // runs on into longText
    EXPECT_STREQ(inserted->clipName, "TTTTTTTT");
  }
}

}  // namespace
