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

using tcs_test::LogCapture;
using tcs_test::NewCommand;
using tcs_test::PlaySpan;
using tcs_test::PlaySpans;

constexpr uint32_t kMarks = TCSF_POS | TCSF_IN | TCSF_OUT;
constexpr uint32_t kRefused = 0xA8087013u;
constexpr uint32_t kNone = 0xFFFFFFFFu;
const char* const kRefusedLine = "TCSpace(0xA8087013)";
const char* const kBadRangeLine = "TCSpace(0xA808F013)";

// Channels 0, 1 and 32 all hold A [100, 200), B [300, 400) and Z, which sits
// between the last start an edit gives (10692000) and 10692000 - 100.
const std::vector<PlaySpan> kInitial = {
    {100, 100, 1000}, {300, 100, 2000}, {10691950, 10, 9000}};
const uint32_t kChannels[] = {0, 1, 32};

// A space laid out as kInitial on every channel of kChannels, with the
// host's notifications installed (a file insert needs the add one).
struct Timeline {
  Timeline() {
    log.Install(space.get());
    for (uint32_t channel : kChannels) {
      for (const PlaySpan& s : kInitial) {
        auto clip = tcs_test::MakeClip(s.start, s.length, s.source_in);
        EXPECT_EQ(tcsAddClip(space.get(), clip.get(), channel), 0u);
      }
    }
  }
  tcs_test::NotificationLog log;  // outlives the space, which reports to it on close
  tcs_test::OpenedSpace space;
};

struct EditRow {
  const char* what;
  uint32_t command;
  uint32_t flags;
  uint32_t position;
  uint32_t in;
  uint32_t out;
  const char* long_text;
  uint32_t result;
  // Channels 0 and 32 (the masks name them) afterwards.
  std::vector<PlaySpan> masked;
  // Channel 1 is named only by TCSF_ALL: then it must equal `masked`.
  bool every_channel;
  const char* log_line;  // the one line expected, or null for none
};

// Every row of the command table, with videoMask 1 and audioMask 1.
TEST(EditCommands, EachFormBecomesItsSpaceEdit) {
  const PlaySpan a{100, 100, 1000}, b{300, 100, 2000}, z{10691950, 10, 9000};
  // [in 150, out 450) blanked: A keeps its head, B goes.
  const std::vector<PlaySpan> blanked = {{100, 50, 1000}, z};
  const std::vector<EditRow> rows = {
      // TCSCMD_INSERT, clip form: any of TCSF_AT, TCSF_IN, TCSF_OUT.
      {"insert clip, IN", TCSCMD_INSERT, TCSF_TEXT | TCSF_IN, 1000, 10, 60, "clip", 0,
       {a, b, {1000, 50, 10}, z}, false, nullptr},
      {"insert clip, AT", TCSCMD_INSERT, TCSF_TEXT | TCSF_AT, 1000, 10, 60, "clip", 0,
       {a, b, {1000, 50, 10}, z}, false, nullptr},
      // [120, 150) splits A; the right-hand piece plays on from source 1050.
      {"insert clip, OUT, overwrites", TCSCMD_INSERT, TCSF_TEXT | TCSF_OUT, 120, 0, 30, "clip", 0,
       {{100, 20, 1000}, {120, 30, 0}, {150, 50, 1050}, b, z}, false, nullptr},
      {"insert clip, POS alone is refused", TCSCMD_INSERT, TCSF_TEXT | TCSF_POS, 1000, 10, 60,
       "clip", kRefused, kInitial, false, kRefusedLine},
      {"insert clip, in none", TCSCMD_INSERT, TCSF_TEXT | TCSF_IN, 1000, kNone, 60, "clip",
       kRefused, kInitial, false, kRefusedLine},
      {"insert clip, out none", TCSCMD_INSERT, TCSF_TEXT | TCSF_OUT, 1000, 10, kNone, "clip",
       kRefused, kInitial, false, kRefusedLine},
      // TCSCMD_INSERT, range form: all marks.
      {"insert gap, ripple", TCSCMD_INSERT, kMarks | TCSF_RIPPLE, 0, 150, 160, "", 0,
       {a, {311, 100, 2000}, {10691961, 10, 9000}}, false, nullptr},
      {"insert without ripple blanks", TCSCMD_INSERT, kMarks, 0, 150, 450, "", 0, blanked, false,
       nullptr},
      {"TEXT with an empty longText is the range form", TCSCMD_INSERT, TCSF_TEXT | kMarks, 0, 150,
       450, "", 0, blanked, false, nullptr},
      {"insert range without POS", TCSCMD_INSERT, TCSF_IN | TCSF_OUT, 0, 150, 450, "", kRefused,
       kInitial, false, kRefusedLine},
      // TCSCMD_CLEAR.
      {"clear range", TCSCMD_CLEAR, kMarks, 0, 150, 450, "", 0, blanked, false, nullptr},
      {"clear range, ripple", TCSCMD_CLEAR, kMarks | TCSF_RIPPLE, 0, 150, 450, "", 0,
       {{100, 50, 1000}, {10691650, 10, 9000}}, false, nullptr},
      // out past the end becomes 10692000 - in = 10691900, so Z survives.
      {"clear to past the end", TCSCMD_CLEAR, kMarks, 0, 100, 10692001, "", 0, {z}, false,
       nullptr},
      {"clear to past the end, ripple", TCSCMD_CLEAR, kMarks | TCSF_RIPPLE, 0, 100, 10692001, "",
       0, {{150, 10, 9000}}, false, nullptr},
      {"clear all", TCSCMD_CLEAR, TCSF_ALL, 0, 0, 0, "", 0, {}, true, nullptr},
      {"clear all, ripple", TCSCMD_CLEAR, TCSF_ALL | TCSF_RIPPLE, 0, 0, 0, "", 0, {}, true,
       nullptr},
      {"clear: marks win over ALL", TCSCMD_CLEAR, TCSF_ALL | kMarks, 0, 150, 450, "", 0, blanked,
       false, nullptr},
      {"clear without marks or ALL", TCSCMD_CLEAR, TCSF_IN | TCSF_OUT | TCSF_RIPPLE, 0, 150, 450,
       "", kRefused, kInitial, false, kRefusedLine},
      // TCSCMD_DELETE.
      {"delete, ripple", TCSCMD_DELETE, kMarks | TCSF_RIPPLE, 0, 200, 300, "", 0,
       {a, {200, 100, 2000}, {10691850, 10, 9000}}, false, nullptr},
      {"delete without ripple blanks", TCSCMD_DELETE, kMarks, 0, 150, 450, "", 0, blanked, false,
       nullptr},
      {"delete without POS", TCSCMD_DELETE, TCSF_IN | TCSF_OUT | TCSF_RIPPLE, 0, 200, 300, "",
       kRefused, kInitial, false, kRefusedLine},
      {"delete of a reversed range: the space refuses, the command does not", TCSCMD_DELETE,
       kMarks, 0, 100, 50, "", 0, kInitial, false, kBadRangeLine},
      // TCSCMD_TRIM on the clip at position 300 (B).
      {"trim gap", TCSCMD_TRIM, TCSF_POS | TCSF_RIPPLE, 250, 280, 0, "", 0,
       {a, {331, 100, 2000}, {10691981, 10, 9000}}, false, nullptr},
      {"trim move", TCSCMD_TRIM, TCSF_POS | TCSF_AT, 300, 500, 0, "", 0,
       {a, {500, 100, 2000}, z}, false, nullptr},
      {"trim move wins over IN", TCSCMD_TRIM, TCSF_POS | TCSF_AT | TCSF_IN, 300, 500, 9999, "", 0,
       {a, {500, 100, 2000}, z}, false, nullptr},
      {"trim in point", TCSCMD_TRIM, TCSF_POS | TCSF_IN, 300, 2010, 2100, "", 0,
       {a, {310, 90, 2010}, z}, false, nullptr},
      {"trim out point", TCSCMD_TRIM, TCSF_POS | TCSF_OUT, 300, 2000, 2050, "", 0,
       {a, {300, 50, 2000}, z}, false, nullptr},
      {"trim with POS alone", TCSCMD_TRIM, TCSF_POS, 300, 500, 600, "", kRefused, kInitial, false,
       kRefusedLine},
      {"trim without POS does nothing", TCSCMD_TRIM, TCSF_AT | TCSF_IN | TCSF_RIPPLE, 300, 500,
       600, "", 0, kInitial, false, nullptr},
      // Other commands pass the edit path without effect.
      {"command 11", 11, kMarks | TCSF_RIPPLE, 0, 150, 450, "x", 0, kInitial, false, nullptr},
      {"command 30", 30, kMarks | TCSF_RIPPLE, 0, 150, 450, "x", 0, kInitial, false, nullptr},
  };

  for (const EditRow& row : rows) {
    SCOPED_TRACE(row.what);
    Timeline timeline;
    LogCapture log;
    auto record = NewCommand(row.command, row.flags);
    record->videoMask = 1;
    record->audioMask = 1;
    record->position = row.position;
    record->inPoint = row.in;
    record->outPoint = row.out;
    std::strcpy(record->longText, row.long_text);

    EXPECT_EQ(tcsSetMode(timeline.space.get(), record.get()), row.result);
    EXPECT_EQ(PlaySpans(*timeline.space, 0), row.masked);
    EXPECT_EQ(PlaySpans(*timeline.space, 32), row.masked);
    EXPECT_EQ(PlaySpans(*timeline.space, 1), row.every_channel ? row.masked : kInitial);
    const std::vector<std::string> expected_log =
        row.log_line == nullptr ? std::vector<std::string>{}
                                : std::vector<std::string>{row.log_line};
    EXPECT_EQ(log.Lines(), expected_log);
    timeline.space->CheckInvariants();
  }
}

struct ClipFormRow {
  const char* what;
  uint32_t flags;
  uint32_t position;
  uint32_t sub_command;
  uint32_t in;
  uint32_t out;
  uint32_t start;       // the inserted record's range
  uint32_t length;
  uint32_t source_out;  // its source out point (source in is always `in`)
};

// Where the clip form puts the clip: between position and position +
// (out - in), by the two-point rule, then cut at the end of the timeline.
TEST(EditCommands, ClipFormPlacesTheRecordBetweenItsTwoEnds) {
  const std::vector<ClipFormRow> rows = {
      {"in before out", TCSF_IN, 1000, 0, 100, 150, 1000, 50, 150},
      {"out before in ends at the position", TCSF_IN, 1000, 0, 150, 100, 950, 50, 100},
      {"ALTPOS takes the position from subCommand", TCSF_IN | TCSF_ALTPOS, 1000, 2000, 100, 150,
       2000, 50, 150},
      {"subCommand unused without ALTPOS", TCSF_IN, 1000, 2000, 100, 150, 1000, 50, 150},
      {"cut at the end of the timeline", TCSF_IN, 10691990, 0, 100, 150, 10691990, 11, 150},
      {"a position past the end starts at the last start", TCSF_IN, 20000000, 0, 0, 10,
       10692000, 1, 10},
      // The end point 10 - 50 wraps above the position: the clip starts
      // there and runs to the end of the timeline.
      {"out before in, end point wraps", TCSF_IN, 10, 0, 150, 100, 10, 10691991, 100},
      // All marks: an out past the last start becomes 10692000 - in.
      {"all marks bound out", TCSF_POS | TCSF_IN | TCSF_OUT, 500, 0, 100, 10692001, 500, 10691501,
       10691900},
      {"without all marks out stays", TCSF_IN | TCSF_OUT, 500, 0, 100, 10692001, 500, 10691501,
       10692001},
  };
  for (const ClipFormRow& row : rows) {
    SCOPED_TRACE(row.what);
    tcs_test::NotificationLog notifications;
    tcs_test::OpenedSpace space;
    notifications.Install(space.get());
    auto record = NewCommand(TCSCMD_INSERT, TCSF_TEXT | row.flags);
    record->videoMask = 0x2;  // channel 1
    record->position = row.position;
    record->subCommand = row.sub_command;
    record->inPoint = row.in;
    record->outPoint = row.out;
    std::strcpy(record->text, "short");
    std::strcpy(record->longText, "the long name");

    ASSERT_EQ(tcsSetMode(space.get(), record.get()), 0u);
    const std::vector<CClip*> listed = tcs_test::ListedClips(*space);
    ASSERT_EQ(listed.size(), 1u);
    const CClip& clip = *listed[0];
    EXPECT_EQ(clip.channel, 1u);
    EXPECT_EQ(clip.start, row.start);
    EXPECT_EQ(clip.length, row.length);
    EXPECT_EQ(clip.sourceIn, row.in);
    EXPECT_EQ(clip.sourceOut, row.source_out);
    EXPECT_EQ(PlaySpans(*space, 1), (std::vector<PlaySpan>{{row.start, row.length, row.in}}));
  }
}

// The record's texts and masks as the inserted clip carries them.
TEST(EditCommands, ClipFormNamesTheClipFromTheRecordTexts) {
  struct {
    const char* text;
    const char* clip_name;  // null: none
    const char* comment;
  } const rows[] = {
      {"abc", "abc", "abc"},
      {"abcdefgh", "abcdefgh", "abcdefgh"},
      {"", nullptr, nullptr},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.text);
    tcs_test::NotificationLog notifications;
    tcs_test::OpenedSpace space;
    notifications.Install(space.get());
    auto record = NewCommand(TCSCMD_INSERT, TCSF_TEXT | TCSF_IN);
    record->videoMask = 0x5;
    record->audioMask = 0x2;
    record->position = 100;
    record->inPoint = 0;
    record->outPoint = 10;
    std::strcpy(record->text, row.text);
    std::strcpy(record->longText, "source name");
    ASSERT_EQ(tcsSetMode(space.get(), record.get()), 0u);

    // One listed copy per masked channel: 0, 2 and 33.
    std::vector<uint32_t> channels;
    for (CClip* clip : tcs_test::ListedClips(*space)) {
      channels.push_back(clip->channel);
      EXPECT_STREQ(clip->name, "source name");
      EXPECT_STREQ(clip->clipName, row.clip_name);
      EXPECT_STREQ(clip->comment, row.comment);
      EXPECT_EQ(clip->videoMask, 0x5u);
      EXPECT_EQ(clip->audioMask, 0x2u);
      EXPECT_EQ(clip->auxMask, 0u);
    }
    EXPECT_EQ(channels, (std::vector<uint32_t>{0, 2, 33}));
  }
}

// The host's record as it was allocated: exactly `size` bytes. ASan fails
// the test if the edit path reads one byte past them.
TEST(EditCommands, NothingPastTheDeclaredSizeIsRead) {
  struct Case {
    const char* what;
    uint32_t allocated;
    uint32_t size;     // written into the record
    uint32_t command;
    uint32_t flags;
    uint32_t expected_size;
    std::vector<PlaySpan> channel0;
    std::vector<std::string> log;
    std::string name;  // of the clip inserted at 150, if any
  };
  const PlaySpan z{10691950, 10, 9000};
  const std::vector<Case> cases = {
      // in and out (offsets 68, 72) are not declared: both read as 0, and the
      // space refuses the empty range.
      {"56 bytes, size 0", 56, 0, TCSCMD_DELETE, kMarks | TCSF_RIPPLE, 56, kInitial,
       {kBadRangeLine}, ""},
      {"56 bytes, size 56", 56, 56, TCSCMD_DELETE, kMarks | TCSF_RIPPLE, 56, kInitial,
       {kBadRangeLine}, ""},
      // in 150, out 450 declared; longText (offset 85) is not, so TCSF_TEXT
      // falls to the range form.
      {"80 bytes", 80, 80, TCSCMD_INSERT, TCSF_TEXT | kMarks, 80, {{100, 50, 1000}, z}, {}, ""},
      // longText's first byte declared, its zero not: the clip is named by
      // that one character.
      {"86 bytes", 86, 86, TCSCMD_INSERT, TCSF_TEXT | TCSF_IN, 86,
       {{100, 50, 1000}, {150, 300, 150}, z}, {}, "N"},
      // A whole record whose longText never ends: the name stops one byte
      // short of the record's end.
      {"4188 bytes", 4188, 4188, TCSCMD_INSERT, TCSF_TEXT | TCSF_IN, 4188,
       {{100, 50, 1000}, {150, 300, 150}, z}, {}, std::string(4102, 'N')},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    Timeline timeline;
    LogCapture log;
    auto bytes = std::make_unique<unsigned char[]>(c.allocated);
    auto full = NewCommand(c.command, c.flags);
    full->size = c.size;
    full->videoMask = 1;
    full->position = 150;
    full->inPoint = 150;
    full->outPoint = 450;
    std::memset(full->text, 'T', sizeof full->text);  // no zero within the record's text
    std::memset(full->longText, 'N', sizeof full->longText);
    std::memcpy(bytes.get(), full.get(), c.allocated);
    auto* record = reinterpret_cast<TCSCMD*>(bytes.get());

    EXPECT_EQ(tcsSetMode(timeline.space.get(), record), 0u);
    EXPECT_EQ(record->size, c.expected_size);
    EXPECT_EQ(PlaySpans(*timeline.space, 0), c.channel0);
    EXPECT_EQ(log.Lines(), c.log);
    if (!c.name.empty()) {
      const CClip* inserted = timeline.space->LookupOf(0)->find(150)->clip;
      EXPECT_EQ(std::string(inserted->name), c.name);
      // An unterminated text runs on into longText.
      EXPECT_EQ(std::string(inserted->comment), "TTTTTTTTT" + c.name);
      EXPECT_STREQ(inserted->clipName, "TTTTTTTT");
    }
  }
}

}  // namespace
