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

// Which handles a row runs with: the populated space, or (any of) a null,
// a closed and a never opened one.
enum Handles { kPopulated = 0, kNull = 1, kClosed = 2, kUnknown = 4, kNotOpen = 7 };

// A populated space, a record found at 50 on channel 0 (for the current-clip
// rows, after Search) and `h`, the handle the row passes.
struct Scene {
  Scene() {
    EXPECT_EQ(tcsAddClip(s(), MakeClip(0, 100, 1000, "a").get(), 0), 0u);
    EXPECT_EQ(tcsAddClip(s(), MakeClip(100, 50, 2000, "b").get(), 0), 0u);
    EXPECT_EQ(tcsAddClip(s(), MakeClip(20, 60, 3000, "c").get(), 32), 0u);
  }
  void Search() {
    CClip* found = nullptr;
    EXPECT_EQ(tcsFindClip(s(), 64, 50, &found, 0), 50u);
  }
  CTimeCodeSpace* s() const { return space.get(); }
  tcs_test::OpenedSpace space;
  CTimeCodeSpace* h = nullptr;
};

struct Row {
  const char* entry;
  Handles handles;
  const char* input;  // with kPopulated
  std::function<uint32_t(Scene&)> call;
  uint32_t answer;
  std::vector<std::string> log;
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
                 void (*edit)(TCSCMD&) = [](TCSCMD&) {}) {
  auto record = tcs_test::NewCommand(command, TCSF_MARKS);
  record->inPoint = in;
  record->outPoint = out;
  record->videoMask = 1;
  edit(*record);
  return tcsSetMode(space, record.get());
}

// tcsSetCurClip after a search, with a record that `edit` spoils.
uint32_t SetCur(Scene& f, void (*edit)(CClip&)) {
  f.Search();
  auto c = MakeClip(500, 10, 0, "x");
  edit(*c);
  return tcsSetCurClip(f.h, c.get());
}

// The answer of `call`, or 0 when it wrote to the output it was handed.
uint32_t LeavesOutput(const std::function<uint32_t(CClip**)>& call) {
  CClip* const unwritten = reinterpret_cast<CClip*>(8);
  CClip* out = unwritten;
  const uint32_t answer = call(&out);
  return out == unwritten ? answer : 0;
}

// A malformed EDL whose first bad event line is line 2, read in strict mode:
// one log line, naming it. (Read tolerantly, the line is skipped with a
// warning naming it and the event after it is added: the space changes, so
// that case is checked in the reader's tests, not here.)
uint32_t ReadMalformed(Scene& f) {
  tcs_test::TempDir dir;
  const std::string path = dir.File("bad.edl");
  tcs_test::WriteFile(path, "TITLE: t\n001  AX  V  C  00:00:0x:00 junk\n"
                            "002  AX       V     C        00:00:00:00 00:00:01:00 "
                            "00:00:00:00 00:00:01:00\n");
  EDLSETTINGS settings;
  edlInitSettings(&settings, 30, 0);
  settings.strict = 1;
  tcs_test::LogCapture log;
  const uint32_t r = edlReadFile(f.h, path.c_str(), &settings);
  const std::vector<std::string> lines = log.Lines();
  EXPECT_EQ(lines.size(), 1u);
  EXPECT_EQ(lines.empty() ? "" : lines[0].substr(lines[0].find(") ") + 2, 7), "line 2:");
  return r;
}

// The answer of a listing call given outputs preset to a marker, or 0 when
// it wrote any of them.
uint32_t LeavesOutputs(const std::function<uint32_t(unsigned int*, unsigned int*, TCSCLIP*)>& call) {
  constexpr unsigned int kMarker = 0xDEADu;
  unsigned int a = kMarker, b = kMarker;
  TCSCLIP row{};
  row.start = kMarker;
  const uint32_t answer = call(&a, &b, &row);
  return a == kMarker && b == kMarker && row.start == kMarker ? answer : 0;
}

uint32_t GetClips(Scene& f, uint32_t channel, uint32_t from, uint32_t to) {
  return LeavesOutputs([&](unsigned int* n, unsigned int* next, TCSCLIP* rows) {
    return tcsGetClips(f.h, channel, from, to, rows, 1, n, next);
  });
}

std::vector<Row> Rows() {
  const auto clip = [] { return MakeClip(500, 10, 0, "x"); };
  const char* const any = "";
  return {
      {"tcsOpen", kPopulated, "path of 4096 characters",
       [](Scene&) { return tcsOpen(nullptr, nullptr, std::string(4096, 'p').c_str()) == nullptr; },
       1, kBadArgs},
      {"tcsOpen (a new space, no error)", kNotOpen, any,
       [](Scene& f) {
         CTimeCodeSpace* opened = tcsOpen(f.h, nullptr, nullptr);
         const bool fresh = opened != nullptr && opened != f.s();
         tcsClose(opened);
         return uint32_t{fresh};
       },
       1, kNoLog},
      {"tcsClose", kNotOpen, any, [](Scene& f) { return tcsClose(f.h); }, 0xA8080004, kBadHandle},
      {"tcsSetAddCallback", kNotOpen, any,
       [](Scene& f) { return tcsSetAddCallback(f.h, nullptr, nullptr); }, 0xE8090004,
       {"clsSetAddCallback(0xE8090004)"}},
      {"tcsSetDelCallback", kNotOpen, any,
       [](Scene& f) { return tcsSetDelCallback(f.h, nullptr, nullptr); }, 0xE8090004,
       {"clsSetDelCallback(0xE8090004)"}},
      {"tcsSetChangeCallback", kNotOpen, any,
       [](Scene& f) { return tcsSetChangeCallback(f.h, nullptr, nullptr); }, 0, kNoLog},
      {"tcsAddClip", kNotOpen, any, [=](Scene& f) { return tcsAddClip(f.h, clip().get(), 0); },
       0xA8080004, kBadHandle},
      {"tcsAddClip", kPopulated, "null record",
       [](Scene& f) { return tcsAddClip(f.h, nullptr, 0); }, 0xA8087013, kBadArgs},
      {"tcsSetCurClip", kNotOpen, any, [=](Scene& f) { return tcsSetCurClip(f.h, clip().get()); },
       0xA8080005, kNullSpace},
      {"tcsSetCurClip", kPopulated, "null record",
       [](Scene& f) { return f.Search(), tcsSetCurClip(f.h, nullptr); }, 0xA8087013, kBadArgs},
      {"tcsSetCurClip", kPopulated, "no search yet",
       [=](Scene& f) { return tcsSetCurClip(f.h, clip().get()); }, 0xA808F003, kNoCurrent},
      {"tcsSetCurClip", kPopulated, "reversed source (out before in)",
       [](Scene& f) { return SetCur(f, [](CClip& c) { c.sourceIn = 50, c.sourceOut = 40; }); },
       0xA8087013, kBadArgs},
      {"tcsSetCurClip", kPopulated, "over-long range (start + length past 2^32)",
       [](Scene& f) {
         return SetCur(f, [](CClip& c) { c.start = 0xFFFFFF00u, c.length = 0x200; });
       },
       0xA8087013, kBadArgs},
      {"tcsSetCurClip", kPopulated, "another channel",
       [](Scene& f) { return SetCur(f, [](CClip& c) { c.channel = 1; }); }, 0xA8087013, kBadArgs},
      {"tcsGetCurClip", kNotOpen, any, [](Scene& f) { CClip c; return tcsGetCurClip(f.h, &c); },
       0xA8080005, kNullSpace},
      {"tcsGetCurClip", kPopulated, "null record",
       [](Scene& f) { return tcsGetCurClip(f.h, nullptr); }, 0xA8087013, kBadArgs},
      {"tcsGetCurClip", kPopulated, "no search yet",
       [](Scene& f) { CClip c; return tcsGetCurClip(f.h, &c); }, 0xA808F003, kNoCurrent},
      {"tcsClipActive", kNotOpen, any, [](Scene& f) { return tcsClipActive(f.h); }, 0, kNoLog},
      {"tcsTranslate (output not written)", kNotOpen, any,
       [](Scene& f) {
         return LeavesOutput([&](CClip** o) { return tcsTranslate(f.h, 0, 50, o, 0); });
       },
       0xA8080004, kBadHandle},
      {"tcsFindClip (output not written)", kNotOpen, any,
       [](Scene& f) {
         return LeavesOutput([&](CClip** o) { return tcsFindClip(f.h, 24, 50, o, 0); });
       },
       kNotFound, kBadHandle},
      {"tcsFindNextClip (the walk ends)", kNotOpen, any,
       [](Scene& f) {
         auto r = tcs_test::NewCommand(TCSCMD_GET, 0, TCSSUB_NEXT);
         const uint32_t answer = tcsFindNextClip(f.h, r.get(), 0, nullptr);
         return r->position == 0xFFFFFFFFu ? answer : 0;
       },
       kNotFound, kNoLog},
      {"tcsFindNextClip", kPopulated, "null record",
       [](Scene& f) { return tcsFindNextClip(f.h, nullptr, 0, nullptr); }, kNotFound, kNoLog},
      {"tcsSetMode", Handles(kClosed | kUnknown), any,
       [](Scene& f) { return SetMode(f.h, TCSCMD_CLEAR, 0, 100); }, 0xA8080004, kBadHandle},
      {"tcsSetMode", kPopulated, "null record", [](Scene& f) { return tcsSetMode(f.h, nullptr); },
       0xA8080004, kBadHandle},
      {"tcsSetMode (position 0xFFFFFFFF)", kNull, any,
       [](Scene& f) {
         auto r = tcs_test::NewCommand(TCSCMD_CLEAR, TCSF_ALL);
         const uint32_t answer = tcsSetMode(f.h, r.get());
         return r->position == 0xFFFFFFFFu ? answer : 0;
       },
       0xFFFFFFFF, kNoLog},
      {"tcsSetMode", kPopulated, "wrong type",
       [](Scene& f) {
         return SetMode(f.h, TCSCMD_CLEAR, 0, 100, [](TCSCMD& r) { r.type = 0xFA250201u; });
       },
       0xA8087004, {"TCSpace(0xA8087004)"}},
      {"tcsSetMode", kPopulated, "reversed range (delete, in after out)",
       [](Scene& f) { return SetMode(f.h, TCSCMD_DELETE, 120, 30); }, 0, kBadRange},
      {"tcsSetMode", kPopulated, "over-long range (delete over 10692001 frames)",
       [](Scene& f) { return SetMode(f.h, TCSCMD_DELETE, 0, 10692001); }, 0, kBadRange},
      {"tcsSetMode", kPopulated, "reversed range (insert, in after out)",
       [](Scene& f) { return SetMode(f.h, TCSCMD_INSERT, 120, 30); }, 0, kBadRange},
      {"tcsSetMode", kPopulated, "insert with neither text nor all three marks",
       [](Scene& f) {
         return SetMode(f.h, TCSCMD_INSERT, 0, 10, [](TCSCMD& r) { r.flags = TCSF_IN; });
       },
       0xA8087013, kBadArgs},
      {"tcsSetMode", kPopulated, "too-short size (40: no flags declared)",
       [](Scene& f) { return SetMode(f.h, TCSCMD_DELETE, 0, 100, [](TCSCMD& r) { r.size = 40; }); },
       0xA8087013, kBadArgs},
      {"tcsSetMode", kPopulated, "too-short size (56: no in or out point declared)",
       [](Scene& f) { return SetMode(f.h, TCSCMD_DELETE, 0, 100, [](TCSCMD& r) { r.size = 56; }); },
       0, kBadRange},
      {"tcsSetMode", kPopulated, "unknown sub-command",
       [](Scene& f) { return tcsSetMode(f.h, tcs_test::NewCommand(TCSCMD_GET, 0, 95).get()); },
       0xFFFFFFFF, kNoLog},
      {"tcsGetNumberOfBackUpsAvailable", kNotOpen, any,
       [](Scene& f) { return tcsGetNumberOfBackUpsAvailable(f.h); }, 0, kBadHandle},
      {"tcsSetBackUpRestore", kNotOpen, any,
       [](Scene& f) {
         char name[4096] = {};
         return tcsSetBackUpRestore(f.h, 1, name);
       },
       0xA8080004, kBadHandle},
      {"_tcsAddEdlLine", kNotOpen, any,
       [](Scene& f) {
         EDLLINE line{};
         line.clip.videoMask = 1;
         line.recordOut = line.clip.sourceOut = 10;
         return _tcsAddEdlLine(f.h, &line, 0);
       },
       0xA8080005, kNullSpace},
      {"_tcsAddEdlLine", kPopulated, "null line",
       [](Scene& f) { return _tcsAddEdlLine(f.h, nullptr, 0); }, 0xA8080005, kNullSpace},
      {"_tcsGetEdlLine", kNotOpen, any,
       [](Scene& f) { EDLLINE line{}; return _tcsGetEdlLine(f.h, &line, 0, 1); }, 0xA8080005,
       kNullSpace},
      {"_tcsGetEdlLine", kPopulated, "null line",
       [](Scene& f) { return _tcsGetEdlLine(f.h, nullptr, 0, 1); }, 0xA8080005, kNullSpace},
      {"tcsWriteEdl (no file written)", kNotOpen, any,
       [](Scene& f) {
         tcs_test::TempDir dir;
         const std::string path = dir.File("out.edl");
         const uint32_t r = tcsWriteEdl(f.h, path.c_str(), 0, nullptr);
         return tcs_test::ReadFile(path) == "<missing>" ? r : 0;
       },
       0xA8080004, kBadHandle},
      {"tcsWriteEdl", kPopulated, "a path that cannot be opened",
       [](Scene& f) { return tcsWriteEdl(f.h, "/nonexistent-dir/out.edl", 0, nullptr); },
       0xFFFFFFFF, kNoLog},
      {"tcsGetChannels (outputs not written)", kNotOpen, any,
       [](Scene& f) {
         return LeavesOutputs([&](unsigned int* a, unsigned int* b, TCSCLIP*) {
           return tcsGetChannels(f.h, a, b, b);
         });
       },
       0xA8080004, kBadHandle},
      {"tcsGetChannels", kPopulated, "a null output",
       [](Scene& f) {
         unsigned int a, b;
         return tcsGetChannels(f.h, &a, &b, nullptr);
       },
       0xA8087013, kBadArgs},
      {"tcsGetClipCount (count not written)", kNotOpen, any,
       [](Scene& f) {
         return LeavesOutputs([&](unsigned int* n, unsigned int*, TCSCLIP*) {
           return tcsGetClipCount(f.h, 0, n);
         });
       },
       0xA8080004, kBadHandle},
      {"tcsGetClipCount", kPopulated, "channel 96; null count",
       [](Scene& f) {
         const uint32_t wide = LeavesOutputs([&](unsigned int* n, unsigned int*, TCSCLIP*) {
           return tcsGetClipCount(f.h, 96, n);
         });
         return wide == tcsGetClipCount(f.h, 0, nullptr) ? wide : 0;
       },
       0xA8087013, {"TCSpace(0xA8087013)", "TCSpace(0xA8087013)"}},
      {"tcsGetClips (outputs not written)", kNotOpen, any,
       [](Scene& f) { return GetClips(f, 0, 0, 100); }, 0xA8080004, kBadHandle},
      {"tcsGetClips", kPopulated, "channel 96 (outputs not written)",
       [](Scene& f) { return GetClips(f, 96, 0, 100); }, 0xA8087013, kBadArgs},
      {"tcsGetClips", kPopulated, "reversed range, to before from (outputs not written)",
       [](Scene& f) { return GetClips(f, 0, 100, 99); }, 0xA808F013, kBadRange},
      {"tcsGetClips", kPopulated, "null count or next; null rows with a capacity",
       [](Scene& f) {
         unsigned int n, next;
         TCSCLIP row;
         const uint32_t a = tcsGetClips(f.h, 0, 0, 100, &row, 1, nullptr, &next);
         const uint32_t b = tcsGetClips(f.h, 0, 0, 100, &row, 1, &n, nullptr);
         const uint32_t c = tcsGetClips(f.h, 0, 0, 100, nullptr, 1, &n, &next);
         return a == b && b == c ? a : 0;
       },
       0xA8087013, {"TCSpace(0xA8087013)", "TCSpace(0xA8087013)", "TCSpace(0xA8087013)"}},
      {"tcsDescribeClip", kPopulated, "null record; null row",
       [](Scene&) {
         TCSCLIP row;
         const uint32_t a = tcsDescribeClip(nullptr, &row);
         return a == tcsDescribeClip(MakeClip(0, 1).get(), nullptr) ? a : 0;
       },
       0xA8087013, {"TCSpace(0xA8087013)", "TCSpace(0xA8087013)"}},
      {"tcsChannelName (text not written)", kPopulated, "channel 96; a size under 4; null text",
       [](Scene&) {
         char text[8] = "keep";
         const uint32_t a = tcsChannelName(96, text, sizeof text);
         const uint32_t b = tcsChannelName(1, text, 3);
         const uint32_t c = tcsChannelName(1, nullptr, 8);
         return a == b && b == c && std::string(text) == "keep" ? a : 0;
       },
       0xA8087013, {"TCSpace(0xA8087013)", "TCSpace(0xA8087013)", "TCSpace(0xA8087013)"}},
      {"tcsParseChannels (masks not written)", kPopulated, "\"\", \"V33\", \"V1+\", \"Q1\", null",
       [](Scene&) {
         uint32_t answer = 0;
         for (const char* text : {"", "V33", "V1+", "Q1", static_cast<const char*>(nullptr)}) {
           answer |= LeavesOutputs([&](unsigned int* a, unsigned int* b, TCSCLIP*) {
             return tcsParseChannels(text, a, b, b);
           });
         }
         return answer;
       },
       0xA8087013, std::vector<std::string>(5, "TCSpace(0xA8087013)")},
      {"edlReadFile", kNull, any, [](Scene& f) { return edlReadFile(f.h, "x.edl", nullptr); },
       0xA8080005, {"edlReadFile(x.edl): no space (0xA8080005)"}},
      {"edlReadFile", kPopulated, "a file that does not exist",
       [](Scene& f) { return edlReadFile(f.h, "/nonexistent-dir/in.edl", nullptr); }, 0xFFFFFFFF,
       {"edlReadFile(/nonexistent-dir/in.edl): cannot open or read the file (0xFFFFFFFF)"}},
      {"edlReadFile", kPopulated, "malformed EDL in strict mode (the first event line cannot be read)",
       ReadMalformed, 0xA8087013, kNoLog},
      {"edlReadText", kNull, any,
       [](Scene& f) { return edlReadText(f.h, "", 0, nullptr, nullptr, nullptr); }, 0xA8080005,
       {"edlReadText: no space (0xA8080005)"}},
      {"edlReadText", kPopulated, "a null text of nonzero size",
       [](Scene& f) { return edlReadText(f.h, nullptr, 5, nullptr, nullptr, nullptr); },
       0xA8087013, {"edlReadText: no text (0xA8087013)"}},
      {"edlReadTextRate", kPopulated, "a null text of nonzero size (the rate left as it was)",
       [](Scene& f) {
         EDLREADRATE rate{77, 0, 0, 0, 0};
         const uint32_t status = edlReadTextRate(f.h, nullptr, 5, nullptr, nullptr, nullptr, &rate);
         return rate.framesPerSecond == 77 ? status : 0;
       },
       0xA8087013, {"edlReadText: no text (0xA8087013)"}},
      {"clsSetSourceCounting", kPopulated, "a null clip, and a counting it does not know",
       [](Scene&) {
         CLIPINFO info{};
         clsSetSourceCounting(nullptr, CLS_SOURCE_DROP_FRAME);
         clsSetSourceCounting(&info, CLS_SOURCE_NON_DROP + 1);
         return clsGetSourceCounting(nullptr) + clsGetSourceCounting(&info);
       },
       CLS_SOURCE_AS_LIST, kNoLog},
      {"clsPlayedSource", kPopulated, "a null clip",
       [](Scene&) {
         clsSetClipSpeed(nullptr, 1000, 0);
         return clsPlayedSource(nullptr, 77, 30) + uint32_t(clsGetClipSpeed(nullptr, nullptr, nullptr));
       },
       77, kNoLog},
  };
}

// Each row runs on a fresh populated space, with each handle it names, and
// must give its answer and log lines and change nothing on the space.
TEST(BadInput, EveryEntryPointAnswersAndLosesNothing) {
  for (const Row& row : Rows()) {
    for (const Handles kind : {kPopulated, kNull, kClosed, kUnknown}) {
      if (kind == kPopulated ? row.handles != kPopulated : (row.handles & kind) == 0) continue;
      const char* handle = kind == kNull ? "null" : kind == kClosed ? "closed" : "unknown";
      SCOPED_TRACE(testing::Message()
                   << row.entry << ": " << (kind == kPopulated ? row.input : handle));
      Scene scene;
      int never_opened = 0;
      scene.h = kind == kPopulated ? scene.s()
                : kind == kUnknown ? reinterpret_cast<CTimeCodeSpace*>(&never_opened)
                : kind == kClosed  ? tcsOpen(nullptr, nullptr, nullptr)
                                   : nullptr;
      if (kind == kClosed) tcsClose(scene.h);
      const Snapshot before = Take(*scene.s());
      ASSERT_FALSE(before.empty());
      tcs_test::LogCapture log;
      EXPECT_EQ(row.call(scene), row.answer);
      EXPECT_EQ(log.Lines(), row.log);
      EXPECT_EQ(Take(*scene.s()), before);
      scene.s()->CheckInvariants();
    }
  }
}

}  // namespace
