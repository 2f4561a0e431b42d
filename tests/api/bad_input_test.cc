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
    for (const CPlayClip& pc : *lookup) {
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
      {"tcsClose", "null space", [](Scene&) { return tcsClose(nullptr); }, 0xA8080004, kBadHandle},
      {"tcsClose", "closed handle", [](Scene& f) { return tcsClose(f.closed); }, 0xA8080004,
       kBadHandle},
      {"tcsClose", "unknown handle", [](Scene& f) { return tcsClose(f.unknown()); }, 0xA8080004,
       kBadHandle},
      {"tcsSetAddCallback", "null space",
       [](Scene&) { return tcsSetAddCallback(nullptr, nullptr, nullptr); }, 0xE8090004,
       {"clsSetAddCallback(0xE8090004)"}},
      {"tcsSetAddCallback", "closed handle",
       [](Scene& f) { return tcsSetAddCallback(f.closed, nullptr, nullptr); }, 0xE8090004,
       {"clsSetAddCallback(0xE8090004)"}},
      {"tcsSetDelCallback", "unknown handle",
       [](Scene& f) { return tcsSetDelCallback(f.unknown(), nullptr, nullptr); }, 0xE8090004,
       {"clsSetDelCallback(0xE8090004)"}},
      {"tcsSetChangeCallback", "null space",
       [](Scene&) { return tcsSetChangeCallback(nullptr, nullptr, nullptr); }, 0, kNoLog},
      {"tcsAddClip", "null space", [=](Scene&) { return tcsAddClip(nullptr, clip().get(), 0); },
       0xA8080004, kBadHandle},
      {"tcsAddClip", "closed handle",
       [=](Scene& f) { return tcsAddClip(f.closed, clip().get(), 0); }, 0xA8080004, kBadHandle},
      {"tcsAddClip", "null record", [](Scene& f) { return tcsAddClip(f.s(), nullptr, 0); },
       0xA8087013, kBadArgs},
      {"tcsSetCurClip", "null space",
       [=](Scene&) { return tcsSetCurClip(nullptr, clip().get()); }, 0xA8080005, kNullSpace},
      {"tcsSetCurClip", "closed handle",
       [=](Scene& f) { return tcsSetCurClip(f.closed, clip().get()); }, 0xA8080005, kNullSpace},
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
      {"tcsGetCurClip", "null space", [](Scene&) { CClip c; return tcsGetCurClip(nullptr, &c); },
       0xA8080005, kNullSpace},
      {"tcsGetCurClip", "closed handle",
       [](Scene& f) { CClip c; return tcsGetCurClip(f.closed, &c); }, 0xA8080005, kNullSpace},
      {"tcsGetCurClip", "null record", [](Scene& f) { return tcsGetCurClip(f.s(), nullptr); },
       0xA8087013, kBadArgs},
      {"tcsClipActive", "closed handle", [](Scene& f) { return tcsClipActive(f.closed); }, 0,
       kNoLog},
      {"tcsTranslate", "null space, output untouched",
       [](Scene&) {
         CClip* out = reinterpret_cast<CClip*>(8);
         const uint32_t r = tcsTranslate(nullptr, 0, 50, &out, 0);
         return out == reinterpret_cast<CClip*>(8) ? r : 0;
       },
       0xA8080004, kBadHandle},
      {"tcsTranslate", "unknown handle",
       [](Scene& f) { return tcsTranslate(f.unknown(), 0, 50, nullptr, 0); }, 0xA8080004,
       kBadHandle},
      {"tcsFindClip", "null space, output untouched",
       [](Scene&) {
         CClip* out = reinterpret_cast<CClip*>(8);
         const uint32_t r = tcsFindClip(nullptr, 24, 50, &out, 0);
         return out == reinterpret_cast<CClip*>(8) ? r : 0;
       },
       kNotFound, kBadHandle},
      {"tcsFindClip", "closed handle",
       [](Scene& f) { CClip* out; return tcsFindClip(f.closed, 24, 50, &out, 0); }, kNotFound,
       kBadHandle},
      {"tcsFindNextClip", "null space: the walk ends",
       [](Scene&) {
         auto r = tcs_test::NewCommand(TCSCMD_GET, 0, TCSSUB_NEXT);
         const uint32_t answer = tcsFindNextClip(nullptr, r.get(), 0, nullptr);
         return r->position == 0xFFFFFFFFu ? answer : 0;
       },
       kNotFound, kNoLog},
      {"tcsFindNextClip", "closed handle",
       [](Scene& f) {
         auto r = tcs_test::NewCommand(TCSCMD_GET, 0, TCSSUB_NEXT);
         return tcsFindNextClip(f.closed, r.get(), 0, nullptr);
       },
       kNotFound, kNoLog},
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
      {"tcsSetMode", "closed handle",
       [](Scene& f) { return SetMode(f.closed, TCSCMD_CLEAR, 0, 100); }, 0xA8080004, kBadHandle},
      {"tcsSetMode", "wrong type",
       [](Scene& f) {
         return SetMode(f.s(), TCSCMD_CLEAR, 0, 100, [](TCSCMD& r) { r.type = 0xFA250201u; });
       },
       0xA8087004, {"TCSpace(0xA8087004)"}},
      {"tcsSetMode", "reversed range (delete, in after out)",
       [](Scene& f) { return SetMode(f.s(), TCSCMD_DELETE, 120, 30); }, 0, kBadRange},
      {"tcsSetMode", "over-long range (delete over 10692001 frames)",
       [](Scene& f) { return SetMode(f.s(), TCSCMD_DELETE, 0, 10692001); }, 0, kBadRange},
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
      {"tcsSetMode", "unknown sub-command",
       [](Scene& f) {
         auto r = tcs_test::NewCommand(TCSCMD_GET, 0, 95);
         return tcsSetMode(f.s(), r.get());
       },
       0xFFFFFFFF, kNoLog},
      {"tcsGetNumberOfBackUpsAvailable", "null space",
       [](Scene&) { return tcsGetNumberOfBackUpsAvailable(nullptr); }, 0, kBadHandle},
      {"tcsSetBackUpRestore", "closed handle",
       [](Scene& f) {
         char name[4096] = {};
         return tcsSetBackUpRestore(f.closed, 1, name);
       },
       0xA8080004, kBadHandle},
  };
}

TEST(BadInput, EveryEntryPointAnswersAndLosesNothing) {
  for (const Row& row : Rows()) {
    SCOPED_TRACE(testing::Message() << row.entry << ": " << row.input);
    Scene scene;
    const Snapshot before = Take(*scene.s());
    ASSERT_FALSE(before.empty());
    tcs_test::LogCapture log;
    EXPECT_EQ(row.call(scene), row.answer);
    EXPECT_EQ(log.Lines(), row.log);
    EXPECT_EQ(Take(*scene.s()), before);
    scene.s()->CheckInvariants();
  }
}

}  // namespace
