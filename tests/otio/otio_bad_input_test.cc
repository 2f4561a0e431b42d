// Files the reader must refuse: each gets its status and a one-line message
// that says what is wrong (and names the file when read from one), the
// space is left as it was, and nothing crashes: not JSON, cut short at every
// length, not a timeline, schema versions it does not know, negative and
// absurd times, a rate of 0, nesting a thousand deep.
#include <gtest/gtest.h>

#include <string>

#include "otio/otio.h"
#include "otio/otio_space.h"
#include "support/log_capture.h"
#include "support/temp_dir.h"
#include "support/test_clips.h"
#include "tcs.h"

namespace {

using tcs::otio::ReadResult;
using tcs::otio::Status;
using tcs_test::OpenedSpace;

const char kRt[] = R"({"OTIO_SCHEMA": "RationalTime.1", "rate": 24, "value": 10})";

// A timeline whose only track holds `item`.
std::string WithItem(const std::string& item) {
  return R"({"OTIO_SCHEMA": "Timeline.1", "tracks": {"OTIO_SCHEMA": "Stack.1", "children": [)"
         R"({"OTIO_SCHEMA": "Track.1", "name": "V1", "children": [)" +
         item + "]}]}}";
}

std::string ClipWith(const std::string& start, const std::string& duration,
                     const char* schema = "Clip.2") {
  return std::string(R"({"OTIO_SCHEMA": ")") + schema +
         R"(", "name": "bad", "source_range": {"OTIO_SCHEMA": "TimeRange.1", "start_time": )" +
         start + R"(, "duration": )" + duration + "}}";
}

std::string Time(const std::string& rate, const std::string& value) {
  return R"({"OTIO_SCHEMA": "RationalTime.1", "rate": )" + rate + R"(, "value": )" + value + "}";
}

// Reads `text` into a space that already holds one clip; that clip must be
// all it holds afterwards.
ReadResult Refused(const std::string& text) {
  OpenedSpace space;
  tcs_test::LayClip(space.get(), {3, 10, 20, 5, 0, 0, "before", "", "", ""});
  const std::vector<tcs_test::ClipRow> before = tcs_test::AllClips(space.get());
  const ReadResult read = tcs::otio::ReadOtioText(space.get(), text);
  EXPECT_NE(read.status, Status::kOk) << text;
  EXPECT_FALSE(read.error.empty());
  EXPECT_EQ(read.error.find('\n'), std::string::npos) << read.error;
  EXPECT_EQ(read.clips, 0u);
  EXPECT_EQ(tcs_test::AllClips(space.get()), before) << text;
  return read;
}

void ExpectRefused(const std::string& text, Status status, const char* says) {
  const ReadResult read = Refused(text);
  EXPECT_EQ(read.status, status) << text << "\n" << read.error;
  EXPECT_NE(read.error.find(says), std::string::npos) << read.error;
}

TEST(OtioBadInput, EachFaultHasItsStatusAndALineThatNamesIt) {
  ExpectRefused("", Status::kNotJson, "not JSON");
  ExpectRefused("TITLE: an EDL\n001  AX V C 01:00:00:00", Status::kNotJson, "not JSON");
  ExpectRefused(R"({"OTIO_SCHEMA": "Timeline.1", "tracks": null} trailing)", Status::kNotJson,
                "not JSON");
  ExpectRefused(R"({"OTIO_SCHEMA": "Timeline.1", "value": 1e400})", Status::kNotJson, "not JSON");
  ExpectRefused("[1, 2, 3]", Status::kBadSchema, "expected an object");
  ExpectRefused(R"({"name": "no schema"})", Status::kBadSchema, "without OTIO_SCHEMA");
  ExpectRefused(ClipWith(kRt, kRt), Status::kNotTimeline, "no Timeline");
  ExpectRefused(R"({"OTIO_SCHEMA": "SerializableCollection.1", "children": []})",
                Status::kNotTimeline, "no Timeline");
  ExpectRefused(R"({"OTIO_SCHEMA": "Timeline.2"})", Status::kBadSchema, "newest Timeline.1");
  ExpectRefused(R"({"OTIO_SCHEMA": "Timeline"})", Status::kBadSchema, "is not Name.version");
  ExpectRefused(R"({"OTIO_SCHEMA": "Timeline.0"})", Status::kBadSchema, "does not know");
  ExpectRefused(R"({"OTIO_SCHEMA": "Timeline.1x"})", Status::kBadSchema, "is not Name.version");
  ExpectRefused(R"({"OTIO_SCHEMA": "Timeline.1", "tracks": {"OTIO_SCHEMA": "Track.1"}})",
                Status::kNotTimeline, "not a Stack");
  ExpectRefused(WithItem(ClipWith(kRt, kRt, "Clip.3")), Status::kBadSchema, "newest Clip.2");
  ExpectRefused(WithItem(ClipWith(kRt, Time("24", "-5"))), Status::kBadValue,
                "bad: negative duration");
  ExpectRefused(WithItem(ClipWith(kRt, Time("0", "5"))), Status::kBadValue, "rate of 0");
  ExpectRefused(WithItem(ClipWith(kRt, Time("-24", "5"))), Status::kBadValue, "rate of -24");
  ExpectRefused(WithItem(ClipWith(kRt, Time("24", "1e300"))), Status::kBadValue, "out of range");
  ExpectRefused(WithItem(ClipWith(Time("1e-300", "5"), kRt)), Status::kBadValue, "out of range");
  ExpectRefused(WithItem(ClipWith(kRt, Time("24", "\"ten\""))), Status::kBadValue,
                "numeric rate and value");
  ExpectRefused(WithItem(ClipWith(kRt, "17")), Status::kBadValue, "not an object");
  ExpectRefused(WithItem(R"({"OTIO_SCHEMA": "Clip.2", "source_range": {"duration": null}})"),
                Status::kBadValue, "needs a start_time and a duration");
  // A name with a line break, quoted in the refusal, leaves it one line.
  ExpectRefused(WithItem(R"({"OTIO_SCHEMA": "Clip.2", "name": "two\nlines", "source_range": {}})"),
                Status::kBadValue, "two lines: source_range needs");
  ExpectRefused(WithItem(R"({"OTIO_SCHEMA": "Transition.1", "in_offset": )" + Time("24", "-1") + "}"),
                Status::kBadValue, "negative offset");
  ExpectRefused(WithItem(R"({"OTIO_SCHEMA": "Track.1", "children": 5})"), Status::kBadValue,
                "children is not a list");
}

TEST(OtioBadInput, NestingAThousandDeepIsRefusedWithoutRecursingThatDeep) {
  std::string nested = ClipWith(kRt, kRt);
  for (int i = 0; i < 1000; ++i) {
    nested = std::string(R"({"OTIO_SCHEMA": ")") + (i % 2 ? "Stack.1" : "Track.1") +
             R"(", "children": [)" + nested + "]}";
  }
  ExpectRefused(WithItem(nested), Status::kTooDeep, "nested more than 64 deep");
  // Plain JSON nesting far deeper still: the parser and the reader cope.
  ExpectRefused(std::string(200000, '[') + std::string(200000, ']'), Status::kBadSchema,
                "expected an object");
  ExpectRefused(std::string(200000, '['), Status::kNotJson, "not JSON");
}

TEST(OtioBadInput, AFileCutShortAtAnyLengthIsRefusedCleanly) {
  OpenedSpace source;
  tcs_test::LayClip(source.get(), {0, 0, 48, 100, 0, 0, "first", "R1", "note", ""});
  tcs_test::LayClip(source.get(), {0, 60, 30, 0, 2, 12, "second", "", "", ""});
  tcs_test::LayClip(source.get(), {40, 5, 50, 9, 0, 0, "sound", "", "", ""});
  std::string text;
  ASSERT_EQ(tcs::otio::WriteOtioText(source.get(), {}, &text).status, Status::kOk);
  // The text ends in "}\n": every shorter prefix is cut inside the document.
  for (size_t length = 0; length + 2 < text.size(); length += 7) {
    const ReadResult read = Refused(text.substr(0, length));
    ASSERT_EQ(read.status, Status::kNotJson) << length;
  }
}

TEST(OtioBadInput, FileErrorsNameTheFile) {
  tcs_test::TempDir dir;
  OpenedSpace space;
  const std::string missing = dir.File("missing.otio");
  ReadResult read = tcs::otio::ReadOtioFile(space.get(), missing);
  EXPECT_EQ(read.status, Status::kCannotOpen);
  EXPECT_EQ(read.error.rfind(missing + ": ", 0), 0u) << read.error;
  read = tcs::otio::ReadOtioFile(space.get(), dir.path().string());
  EXPECT_EQ(read.status, Status::kCannotOpen) << read.error;

  const std::string out = dir.File("no/such/dir/out.otio");
  const tcs::otio::WriteResult written = tcs::otio::WriteOtioFile(space.get(), out, {});
  EXPECT_EQ(written.status, Status::kCannotWrite);
  EXPECT_NE(written.error.find(out), std::string::npos) << written.error;

  // A space that is not open: refused before anything is read or written.
  CTimeCodeSpace* closed = tcsOpen(nullptr, nullptr, nullptr);
  tcsClose(closed);
  tcs_test::LogCapture log;  // the listing logs the closed handle
  EXPECT_EQ(tcs::otio::ReadOtioText(closed, WithItem("")).status, Status::kSpaceRefused);
  std::string text = "untouched";
  EXPECT_EQ(tcs::otio::WriteOtioText(closed, {}, &text).status, Status::kSpaceRefused);
  EXPECT_EQ(text, "untouched");
  EXPECT_EQ(log.Lines().size(), 2u);
}

}  // namespace
