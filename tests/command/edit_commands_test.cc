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

using tcs_test::PlaySpan;
using tcs_test::PlaySpans;
using Spans = std::vector<PlaySpan>;
using Lines = std::vector<std::string>;

constexpr uint32_t kMarks = TCSF_POS | TCSF_IN | TCSF_OUT;
constexpr uint32_t kClip = TCSF_TEXT;  // with a non-empty longText: the clip form
constexpr uint32_t kRipple = TCSF_RIPPLE;

// Channels 0, 1 and 32 each hold A, B and Z before every edit; Z lies between
// 10692000 - 100 and the last start an edit gives (10692000).
const PlaySpan kA{100, 100, 1000}, kB{300, 100, 2000}, kZ{10691950, 10, 9000};
const Spans kInitial = {kA, kB, kZ};
const Spans kBlanked = {{100, 50, 1000}, kZ};  // [150, 450) blanked: A cut, B gone
const Spans kInserted = {{100, 50, 1000}, {150, 300, 150}, kZ};  // laid over [150, 450)

const Lines kRefused = {"TCSpace(0xA8087013)"};
const Lines kSpaceRefused = {"TCSpace(0xA808F013)"};

// Every form of every edit command and every refusal, with videoMask 1 and
// audioMask 1 (channels 0 and 32) and subCommand 2000, on full-size records
// that declare `size` bytes filled.
TEST(EditCommands, EachFormBecomesItsSpaceEdit) {
  const struct {
    const char* what;
    uint32_t command, flags, position, in, out;
    Spans masked;  // channels 0 and 32 afterwards
    Lines log = {};
    const char* long_text = "clip";  // null: 'N' to the record's end, no zero
    bool every_channel = false;      // channel 1, named by no mask, is edited too
    uint32_t size = 4188;
  } rows[] = {
      {"clip AT", 7, kClip | TCSF_AT, 1000, 10, 60, {kA, kB, {1000, 50, 10}, kZ}},
      // [120, 150) splits A; the right-hand piece plays on from source 1050.
      {"clip OUT", 7, kClip | TCSF_OUT, 120, 0, 30,
       {{100, 20, 1000}, {120, 30, 0}, {150, 50, 1050}, kB, kZ}},
      {"clip out < in", 7, kClip | TCSF_IN, 1000, 150, 100, {kA, kB, {950, 50, 150}, kZ}},
      {"ALTPOS", 7, kClip | TCSF_IN | TCSF_ALTPOS, 1000, 100, 150, {kA, kB, {2000, 50, 100}, kZ}},
      {"to 10692001", 7, kClip | TCSF_IN, 10691990, 100, 150, {kA, kB, kZ, {10691990, 11, 100}}},
      // All marks: out 10692001 becomes 10692000 - 100; without them it is kept.
      {"clip marks", 7, kClip | kMarks, 0, 100, 10692001, {{0, 10691800, 100}, kZ}},
      {"clip POS", 7, kClip | TCSF_POS, 1000, 10, 60, kInitial, kRefused},
      {"clip in none", 7, kClip | TCSF_IN, 1000, 0xFFFFFFFFu, 60, kInitial, kRefused},
      {"clip out none", 7, kClip | TCSF_OUT, 1000, 10, 0xFFFFFFFFu, kInitial, kRefused},
      {"empty longText", 7, kClip | kMarks | kRipple, 0, 150, 160,
       {kA, {311, 100, 2000}, {10691961, 10, 9000}}, {}, ""},
      {"clear ripple", 8, kMarks | kRipple, 0, 150, 450, {{100, 50, 1000}, {10691650, 10, 9000}}},
      // out becomes 10692000 - 100 = 10691900, short of Z.
      {"clear past the end", 8, kMarks, 0, 100, 10692001, {kZ}},
      {"clear all", 8, TCSF_ALL | kRipple, 0, 0, 0, {}, {}, "", true},
      {"clear marks win over ALL", 8, TCSF_ALL | kMarks, 0, 150, 450, kBlanked},
      {"clear IN OUT", 8, TCSF_IN | TCSF_OUT | kRipple, 0, 150, 450, kInitial, kRefused},
      {"delete", 9, kMarks | kRipple, 0, 200, 300, {kA, {200, 100, 2000}, {10691850, 10, 9000}}},
      {"delete no POS", 9, TCSF_IN | TCSF_OUT, 0, 200, 300, kInitial, kRefused},
      {"gap", 10, TCSF_POS | kRipple, 250, 280, 0, {kA, {331, 100, 2000}, {10691981, 10, 9000}}},
      {"move beats IN", 10, TCSF_POS | TCSF_AT | TCSF_IN, 300, 500, 9, {kA, {500, 100, 2000}, kZ}},
      {"trim in", 10, TCSF_POS | TCSF_IN, 300, 2010, 2100, {kA, {310, 90, 2010}, kZ}},
      {"trim out", 10, TCSF_POS | TCSF_OUT, 300, 2000, 2050, {kA, {300, 50, 2000}, kZ}},
      {"trim POS", 10, TCSF_POS, 300, 500, 600, kInitial, kRefused},
      {"trim no POS", 10, TCSF_AT | TCSF_IN | kRipple, 300, 500, 600, kInitial},
      // longText (offset 85) undeclared, yet its first byte in the host's
      // record picks the clip form; position, in and out are declared.
      {"size 80 clip form", 7, kClip | kMarks, 0, 150, 450, {{0, 300, 150}, kB, kZ}, {}, "clip",
       false, 80},
      {"size 80 range form", 7, kClip | kMarks, 0, 150, 450, kBlanked, {}, "", false, 80},
      {"longText unended", 7, kClip | TCSF_IN, 150, 150, 450, kInserted, {}, nullptr},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    tcs_test::NotificationLog notifications;  // outlives the space, which reports on close
    tcs_test::OpenedSpace space;
    notifications.Install(space.get());  // a file insert needs the add notification
    for (uint32_t channel : {0, 1, 32}) {
      for (const PlaySpan& s : kInitial) {
        ASSERT_EQ(tcsAddClip(space.get(), tcs_test::MakeClip(s.start, s.length, s.source_in).get(),
                             channel), 0u);
      }
    }
    tcs_test::LogCapture log;
    auto record = tcs_test::NewCommand(row.command, row.flags, 2000);
    record->size = row.size;
    record->videoMask = record->audioMask = 1;
    record->position = row.position;
    record->inPoint = row.in;
    record->outPoint = row.out;
    std::memset(record->text, 'T', sizeof record->text);  // no zero: runs on into longText
    std::memset(record->longText, 'N', sizeof record->longText);
    if (row.long_text != nullptr) std::strcpy(record->longText, row.long_text);

    const uint32_t result = tcsSetMode(space.get(), record.get());
    EXPECT_EQ(result, row.log == kRefused ? 0xA8087013u : 0u);
    EXPECT_EQ(record->size, row.size);
    EXPECT_EQ(log.Lines(), row.log);
    for (uint32_t channel : {0, 32}) EXPECT_EQ(PlaySpans(*space, channel), row.masked);
    EXPECT_EQ(PlaySpans(*space, 1), row.every_channel ? row.masked : kInitial);
    space->CheckInvariants();
  }
}

// The clip form reads the first byte of longText and the comment from the
// host's record whatever `size` declares; the clip name, the long name and
// the points come from the declared bytes only (zeros past them).
TEST(EditCommands, InsertTakesLongTextTestAndCommentFromTheHostRecord) {
  for (uint32_t size : {0u, 80u, 4188u}) {
    SCOPED_TRACE(size);
    tcs_test::NotificationLog notifications;
    tcs_test::OpenedSpace space;
    notifications.Install(space.get());
    tcs_test::LogCapture log;
    auto record = tcs_test::NewCommand(TCSCMD_INSERT, TCSF_TEXT | TCSF_IN);
    record->size = size;
    record->videoMask = 1;
    std::strcpy(record->text, "clip");
    std::strcpy(record->longText, "alpha");

    EXPECT_EQ(tcsSetMode(space.get(), record.get()), 0u);
    // Not refused: only the space's own note that the empty range [0, 0) it
    // was handed to prepare has nothing to edit.
    EXPECT_EQ(log.Lines(), kSpaceRefused);
    ASSERT_EQ(notifications.added.size(), 1u);  // InsertFile ran, on channel 0
    const std::vector<CClip*> listed = tcs_test::ListedClips(*space);
    ASSERT_EQ(listed.size(), 1u);
    const CClip& clip = *listed[0];
    const auto text = [](const char* t) { return std::string(t != nullptr ? t : ""); };
    EXPECT_EQ(text(clip.comment), "clip");
    EXPECT_EQ(text(clip.clipName), size >= 80 ? "clip" : "");
    EXPECT_EQ(text(clip.name), size == 4188 ? "alpha" : "");
  }
}

}  // namespace
