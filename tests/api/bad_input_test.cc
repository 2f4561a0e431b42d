// Bad input at every entry point, one table: each row gives one entry point
// a null space, a closed or unknown handle, a null record, a wrong type, a
// reversed or over-long range or a too-short size, and names the answer and
// the log lines expected. Every row also checks that the timeline of a
// populated space, and its clip list, are exactly as they were. The README's
// bad-input table is this table.
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <tuple>
#include <vector>

#include "support/command_record.h"
#include "support/log_capture.h"
#include "support/temp_dir.h"
#include "support/test_clips.h"
#include "tcs.h"

namespace {

using tcs_test::MakeClip;

// Every play clip of every channel and every listed record, as plain values.
using Snapshot = std::vector<std::tuple<uint32_t, uint32_t, uint32_t, uint32_t, std::string>>;

Snapshot Take(const CTimeCodeSpace& space) {
  Snapshot shot;
  for (uint32_t channel = 0; channel < CTimeCodeSpace::kChannels; ++channel) {
    const CTCLookup* lookup = space.lookups[channel];
    if (lookup == nullptr) continue;
    for (const auto& pc : *lookup) {
      shot.emplace_back(channel, pc.start, pc.length, pc.clip ? pc.clip->sourceIn : 0,
                        pc.clip && pc.clip->name ? pc.clip->name : "");
    }
  }
  for (const CClip* c : tcs_test::ListedClips(space)) {
    shot.emplace_back(1000 + c->channel, c->start, c->length, c->sourceIn,
                      c->comment ? c->comment : "");
  }
  return shot;
}

// A populated space, a handle that was open and is closed, one that never
// was, and a record found at 50 on channel 0 (for the current-clip rows).
struct Scene {
  Scene() {
    EXPECT_EQ(tcsAddClip(space.get(), MakeClip(0, 100, 1000, "a").get(), 0), 0u);
    EXPECT_EQ(tcsAddClip(space.get(), MakeClip(100, 50, 2000, "b").get(), 0), 0u);
    EXPECT_EQ(tcsAddClip(space.get(), MakeClip(20, 60, 3000, "c").get(), 32), 0u);
    closed = tcsOpen(nullptr, nullptr, nullptr);
    tcsClose(closed);
  }
  void Search() {
    CClip* found = nullptr;
    EXPECT_EQ(tcsFindClip(s(), 64, 50, &found, 0), 50u);
  }
  CTimeCodeSpace* s() const { return space.get(); }
  tcs_test::OpenedSpace space;
  CTimeCodeSpace* closed = nullptr;
  int never_opened = 0;
  CTimeCodeSpace* unknown() { return reinterpret_cast<CTimeCodeSpace*>(&never_opened); }
};

struct Row {
  const char* entry;
  const char* input;
  std::function<uint32_t(Scene&)> call;
  uint32_t answer;
  std::vector<std::string> log;
};

// A row for a handle that is not open: run with a closed and with an unknown
// handle (and with null too when `with_null`), each answered alike.
struct HandleRow {
  const char* entry;
  std::function<uint32_t(CTimeCodeSpace*)> call;
  uint32_t answer;
  std::vector<std::string> log;
  bool with_null = true;
};

const std::vector<std::string> kNoLog;
const std::vector<std::string> kBadHandle{"TCSpace(0xA8080004)"};
const std::vector<std::string> kNullSpace{"TCSpace(0xA8080005)"};
const std::vector<std::string> kBadArgs{"TCSpace(0xA8087013)"};
const std::vector<std::string> kBadRange{"TCSpace(0xA808F013)"};
const std::vector<std::string> kNoCurrent{"TCSpace(0xA808F003)"};

constexpr uint32_t kNotFound = 0x80000001u;

// A command record for `command` with TCSF_MARKS, in and out points and
// channel 0; `edit` adjusts it before the call.
uint32_t SetMode(CTimeCodeSpace* space, uint32_t command, uint32_t in, uint32_t out,
                 const std::function<void(TCSCMD&)>& edit = nullptr) {
  auto record = tcs_test::NewCommand(command, TCSF_MARKS);
  record->inPoint = in;
  record->outPoint = out;
  record->videoMask = 1;
  if (edit) edit(*record);
  return tcsSetMode(space, record.get());
}

std::vector<HandleRow> HandleRows() {
  auto clip = [] { return MakeClip(500, 10, 0, "x"); };
  return {
      {"tcsClose", [](CTimeCodeSpace* h) { return tcsClose(h); }, 0xA8080004, kBadHandle},
      {"tcsSetAddCallback", [](CTimeCodeSpace* h) { return tcsSetAddCallback(h, nullptr, nullptr); },
       0xE8090004, {"clsSetAddCallback(0xE8090004)"}},
      {"tcsSetDelCallback", [](CTimeCodeSpace* h) { return tcsSetDelCallback(h, nullptr, nullptr); },
       0xE8090004, {"clsSetDelCallback(0xE8090004)"}},
      {"tcsSetChangeCallback",
       [](CTimeCodeSpace* h) { return tcsSetChangeCallback(h, nullptr, nullptr); }, 0, kNoLog},
      {"tcsAddClip", [=](CTimeCodeSpace* h) { return tcsAddClip(h, clip().get(), 0); },
       0xA8080004, kBadHandle},
      {"tcsSetCurClip", [=](CTimeCodeSpace* h) { return tcsSetCurClip(h, clip().get()); },
       0xA8080005, kNullSpace},
      {"tcsGetCurClip", [](CTimeCodeSpace* h) { CClip c; return tcsGetCurClip(h, &c); },
       0xA8080005, kNullSpace},
      {"tcsClipActive", [](CTimeCodeSpace* h) { return tcsClipActive(h); }, 0, kNoLog},
      {"tcsTranslate (output not written)",
       [](CTimeCodeSpace* h) {
         CClip* out = reinterpret_cast<CClip*>(8);
         const uint32_t r = tcsTranslate(h, 0, 50, &out, 0);
         return out == reinterpret_cast<CClip*>(8) ? r : 0;
       },
       0xA8080004, kBadHandle},
      {"tcsFindClip (output not written)",
       [](CTimeCodeSpace* h) {
         CClip* out = reinterpret_cast<CClip*>(8);
         const uint32_t r = tcsFindClip(h, 24, 50, &out, 0);
         return out == reinterpret_cast<CClip*>(8) ? r : 0;
       },
       kNotFound, kBadHandle},
      {"tcsFindNextClip (the walk ends)",
       [](CTimeCodeSpace* h) {
         auto r = tcs_test::NewCommand(TCSCMD_GET, 0, TCSSUB_NEXT);
         const uint32_t answer = tcsFindNextClip(h, r.get(), 0, nullptr);
         return r->position == 0xFFFFFFFFu ? answer : 0;
       },
       kNotFound, kNoLog},
      {"tcsSetMode", [](CTimeCodeSpace* h) { return SetMode(h, TCSCMD_CLEAR, 0, 100); },
       0xA8080004, kBadHandle, false},
      {"tcsGetNumberOfBackUpsAvailable",
       [](CTimeCodeSpace* h) { return tcsGetNumberOfBackUpsAvailable(h); }, 0, kBadHandle},
      {"tcsSetBackUpRestore",
       [](CTimeCodeSpace* h) {
         char name[4096] = {};
         return tcsSetBackUpRestore(h, 1, name);
       },
       0xA8080004, kBadHandle},
      {"_tcsAddEdlLine",
       [](CTimeCodeSpace* h) {
         EDLLINE line{};
         line.clip.videoMask = 1;
         line.recordOut = 10;
         line.clip.sourceOut = 10;
         return _tcsAddEdlLine(h, &line, 0);
       },
       0xA8080005, kNullSpace},
      {"_tcsGetEdlLine",
       [](CTimeCodeSpace* h) {
         EDLLINE line{};
         return _tcsGetEdlLine(h, &line, 0, 1);
       },
       0xA8080005, kNullSpace},
      {"tcsWriteEdl (no file written)",
       [](CTimeCodeSpace* h) {
         tcs_test::TempDir dir;
         const std::string path = dir.File("out.edl");
         const uint32_t r = tcsWriteEdl(h, path.c_str(), 0, nullptr);
         return tcs_test::ReadFile(path) == "<missing>" ? r : 0;
       },
       0xA8080004, kBadHandle},
  };
}

std::vector<Row> Rows() {
  auto clip = [] { return MakeClip(500, 10, 0, "x"); };
  return {
      {"tcsOpen", "path of 4096 characters",
       [](Scene&) { return tcsOpen(nullptr, nullptr, std::string(4096, 'p').c_str()) == nullptr; },
       1, kBadArgs},
      {"tcsOpen", "closed handle: a new space, no error",
       [](Scene& f) {
         CTimeCodeSpace* opened = tcsOpen(f.closed, nullptr, nullptr);
         const bool fresh = opened != nullptr && opened != f.s();
         tcsClose(opened);
         return uint32_t{fresh};
       },
       1, kNoLog},
      {"tcsAddClip", "null record", [](Scene& f) { return tcsAddClip(f.s(), nullptr, 0); },
       0xA8087013, kBadArgs},
      {"tcsSetCurClip", "null record",
       [](Scene& f) {
         f.Search();
         return tcsSetCurClip(f.s(), nullptr);
       },
       0xA8087013, kBadArgs},
      {"tcsSetCurClip", "no search yet",
       [=](Scene& f) { return tcsSetCurClip(f.s(), clip().get()); }, 0xA808F003, kNoCurrent},
      {"tcsSetCurClip", "reversed source (out before in)",
       [=](Scene& f) {
         f.Search();
         auto c = clip();
         c->sourceIn = 50;
         c->sourceOut = 40;
         return tcsSetCurClip(f.s(), c.get());
       },
       0xA8087013, kBadArgs},
      {"tcsSetCurClip", "over-long range (start + length past 2^32)",
       [=](Scene& f) {
         f.Search();
         auto c = clip();
         c->start = 0xFFFFFF00u;
         c->length = 0x200;
         return tcsSetCurClip(f.s(), c.get());
       },
       0xA8087013, kBadArgs},
      {"tcsSetCurClip", "another channel",
       [=](Scene& f) {
         f.Search();
         auto c = clip();
         c->channel = 1;
         return tcsSetCurClip(f.s(), c.get());
       },
       0xA8087013, kBadArgs},
      {"tcsGetCurClip", "null record", [](Scene& f) { return tcsGetCurClip(f.s(), nullptr); },
       0xA8087013, kBadArgs},
      {"tcsGetCurClip", "no search yet", [](Scene& f) { CClip c; return tcsGetCurClip(f.s(), &c); },
       0xA808F003, kNoCurrent},
      {"tcsFindNextClip", "null record",
       [](Scene& f) { return tcsFindNextClip(f.s(), nullptr, 0, nullptr); }, kNotFound, kNoLog},
      {"tcsSetMode", "null record", [](Scene& f) { return tcsSetMode(f.s(), nullptr); },
       0xA8080004, kBadHandle},
      {"tcsSetMode", "null space: position 0xFFFFFFFF",
       [](Scene&) {
         auto r = tcs_test::NewCommand(TCSCMD_CLEAR, TCSF_ALL);
         const uint32_t answer = tcsSetMode(nullptr, r.get());
         return r->position == 0xFFFFFFFFu ? answer : 0;
       },
       0xFFFFFFFF, kNoLog},
      {"tcsSetMode", "wrong type",
       [](Scene& f) {
         return SetMode(f.s(), TCSCMD_CLEAR, 0, 100, [](TCSCMD& r) { r.type = 0xFA250201u; });
       },
       0xA8087004, {"TCSpace(0xA8087004)"}},
      {"tcsSetMode", "reversed range (delete, in after out)",
       [](Scene& f) { return SetMode(f.s(), TCSCMD_DELETE, 120, 30); }, 0, kBadRange},
      {"tcsSetMode", "over-long range (delete over 10692001 frames)",
       [](Scene& f) { return SetMode(f.s(), TCSCMD_DELETE, 0, 10692001); }, 0, kBadRange},
      {"tcsSetMode", "reversed range (insert, in after out)",
       [](Scene& f) { return SetMode(f.s(), TCSCMD_INSERT, 120, 30); }, 0, kBadRange},
      {"tcsSetMode", "insert with neither text nor all three marks",
       [](Scene& f) {
         return SetMode(f.s(), TCSCMD_INSERT, 0, 10, [](TCSCMD& r) { r.flags = TCSF_IN; });
       },
       0xA8087013, kBadArgs},
      {"tcsSetMode", "too-short size (40: no flags declared)",
       [](Scene& f) {
         return SetMode(f.s(), TCSCMD_DELETE, 0, 100, [](TCSCMD& r) { r.size = 40; });
       },
       0xA8087013, kBadArgs},
      {"tcsSetMode", "too-short size (56: no in or out point declared)",
       [](Scene& f) {
         return SetMode(f.s(), TCSCMD_DELETE, 0, 100, [](TCSCMD& r) { r.size = 56; });
       },
       0, kBadRange},
      {"_tcsAddEdlLine", "null line", [](Scene& f) { return _tcsAddEdlLine(f.s(), nullptr, 0); },
       0xA8080005, kNullSpace},
      {"_tcsGetEdlLine", "null line",
       [](Scene& f) { return _tcsGetEdlLine(f.s(), nullptr, 0, 1); }, 0xA8080005, kNullSpace},
      {"tcsWriteEdl", "a path that cannot be opened",
       [](Scene& f) { return tcsWriteEdl(f.s(), "/nonexistent-dir/out.edl", 0, nullptr); },
       0xFFFFFFFF, kNoLog},
      {"edlReadFile", "null space",
       [](Scene&) { return edlReadFile(nullptr, "x.edl", nullptr); }, 0xA8080005,
       {"edlReadFile(x.edl): no space (0xA8080005)"}},
      {"edlReadFile", "a file that does not exist",
       [](Scene& f) { return edlReadFile(f.s(), "/nonexistent-dir/in.edl", nullptr); },
       0xFFFFFFFF,
       {"edlReadFile(/nonexistent-dir/in.edl): cannot open or read the file (0xFFFFFFFF)"}},
      {"edlReadFile", "malformed EDL (the first event line cannot be read)",
       [](Scene& f) {
         tcs_test::TempDir dir;
         const std::string path = dir.File("bad.edl");
         tcs_test::WriteFile(path, "TITLE: t\n001  AX  V  C  00:00:0x:00 junk\n"
                                   "002  AX       V     C        00:00:00:00 00:00:01:00 "
                                   "00:00:00:00 00:00:01:00\n");
         tcs_test::LogCapture log;
         const uint32_t r = edlReadFile(f.s(), path.c_str(), nullptr);
         const std::vector<std::string> lines = log.Lines();  // names file and line
         EXPECT_EQ(lines.size(), 1u);
         EXPECT_EQ(lines.empty() ? "" : lines[0].substr(lines[0].find(") ") + 2, 7), "line 2:");
         return r;
       },
       0xA8087013, kNoLog},
      {"tcsSetMode", "unknown sub-command",
       [](Scene& f) {
         auto r = tcs_test::NewCommand(TCSCMD_GET, 0, 95);
         return tcsSetMode(f.s(), r.get());
       },
       0xFFFFFFFF, kNoLog},
  };
}

// Runs `call` on a fresh populated space and checks answer, log and that
// nothing on the space changed.
void Check(const std::function<uint32_t(Scene&)>& call, uint32_t answer,
           const std::vector<std::string>& lines) {
  Scene scene;
  const Snapshot before = Take(*scene.s());
  ASSERT_FALSE(before.empty());
  tcs_test::LogCapture log;
  EXPECT_EQ(call(scene), answer);
  EXPECT_EQ(log.Lines(), lines);
  EXPECT_EQ(Take(*scene.s()), before);
  scene.s()->CheckInvariants();
}

TEST(BadInput, HandlesThatAreNotOpenAreNeverUsed) {
  for (const HandleRow& row : HandleRows()) {
    for (const char* kind : {"null", "closed", "unknown"}) {
      if (kind == std::string("null") && !row.with_null) continue;
      SCOPED_TRACE(testing::Message() << row.entry << ": " << kind << " handle");
      Check(
          [&](Scene& f) {
            CTimeCodeSpace* handle = kind == std::string("null")     ? nullptr
                                     : kind == std::string("closed") ? f.closed
                                                                     : f.unknown();
            return row.call(handle);
          },
          row.answer, row.log);
    }
  }
}

TEST(BadInput, EveryEntryPointAnswersAndLosesNothing) {
  for (const Row& row : Rows()) {
    SCOPED_TRACE(testing::Message() << row.entry << ": " << row.input);
    Check(row.call, row.answer, row.log);
  }
}

}  // namespace
