// The export, through a translator of the test's own that records what it is
// handed (the library calls the translator by its C names, so these take the
// stand-in's place in this executable): random timelines against a model of
// the walk's events, file and settings handling, wrapped lengths.
#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <filesystem>
#include <random>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

#include "support/log_capture.h"
#include "support/temp_dir.h"
#include "support/test_clips.h"
#include "tcs.h"

namespace {

struct Recording {
  bool fail_open = false;
  int opens = 0, closes = 0;
  std::string path;
  std::array<uint32_t, 2> access_creation{};
  EDLSETTINGS settings{};
  const EDLSETTINGS* settings_address = nullptr;
  std::vector<std::string> lines;
  std::vector<const EDLLINE*> line_addresses;
} rec;

const char kFormat[] = "%u-%u src %u-%u v%x a%x x%x %c%u/%u F%x w%x [%s|%s|%s|%s|%s]%s";

// Every field of a line, the texts it points to, and whether the bytes the
// export never writes are still 0.
std::string Describe(const EDLLINE& l) {
  EDLLINE rest = l;
  rest.clip = CLIPINFO{0, 0, l.clip.sourceOrigin, l.clip.sourceEnd, {}, 0, 0, 0, nullptr, nullptr,
                       nullptr, nullptr, {}};
  std::memcpy(rest.clip.libReserved, l.clip.libReserved, sizeof rest.clip.libReserved);
  std::memcpy(rest.clip.libTrailer, l.clip.libTrailer, sizeof rest.clip.libTrailer);
  rest.recordIn = rest.recordOut = rest.effectCode = rest.effectDuration = rest.lineFlags =
      rest.settingsWord = rest.transition = 0;
  rest.extraText = nullptr;
  const EDLLINE zero{};
  char text[256];
  std::snprintf(text, sizeof text, kFormat, l.recordIn, l.recordOut, l.clip.sourceIn,
                l.clip.sourceOut, l.clip.videoMask, l.clip.audioMask, l.clip.auxMask,
                l.transition, l.effectCode, l.effectDuration, l.lineFlags, l.settingsWord,
                l.clip.clipName, l.clip.name, l.clip.comment, l.clip.reel, l.extraText,
                std::memcmp(&rest, &zero, sizeof rest) ? " +junk" : "");
  return text;
}

}  // namespace

extern "C" void* edlOpen(const char* path, uint32_t access, uint32_t creation,
                         const EDLSETTINGS* settings) {
  ++rec.opens;
  rec.path = path;
  rec.access_creation = {access, creation};
  rec.settings = *settings;
  rec.settings_address = settings;
  return rec.fail_open ? nullptr : &rec;
}

extern "C" uint32_t edlWriteLine(void*, const EDLLINE* line) {
  if (rec.lines.size() > 1000) throw std::runtime_error("the export does not end");
  rec.lines.push_back(Describe(*line));
  rec.line_addresses.push_back(line);
  return 0;
}

extern "C" uint32_t edlClose(void*) { return ++rec.closes; }

namespace {

constexpr std::array<uint32_t, 20> kScanOrder = {0,  1,  2,  3,  32, 33, 34, 35, 36, 37,
                                                 38, 39, 40, 41, 42, 43, 44, 45, 46, 47};

uint32_t Draw(std::mt19937& rnd, uint32_t n) { return static_cast<uint32_t>(rnd() % n); }

struct Laid {
  uint32_t channel, start, length, source_in;
  std::string name, tag;  // tag: the clip name; reel and comment derive from it
  uint32_t code = 0, duration = 0;
};

// Lays the clip; returns the line an event led by it, on `video` and
// `audio`, should give.
std::string Lay(CTimeCodeSpace* space, const Laid& c, uint32_t video, uint32_t audio) {
  auto clip = tcs_test::MakeClip(c.start, c.length, c.source_in, c.name.c_str());
  clip->SetClipName(c.tag.c_str());
  clip->SetReel(("R" + c.tag).c_str());
  clip->SetComment(("c" + c.tag).c_str());
  clip->SetEffect(c.code, nullptr, c.duration);
  EXPECT_EQ(tcsAddClip(space, clip.get(), c.channel), 0u);
  char text[256];
  std::snprintf(text, sizeof text, kFormat, c.start, c.start + c.length, c.source_in,
                c.source_in + c.length, video, audio, 0, clip->effectText[0] ? 'W' : 'C', c.code,
                c.duration, 0xFFF0, 0x5A5A, c.tag.c_str(), c.name.c_str(), ("c" + c.tag).c_str(),
                ("R" + c.tag).c_str(), "", "");
  return text;
}

// Slots of clips starting together on random walked channels, two sources a
// slot, each slot over before the next begins; channels 5 and 50 anywhere.
// At each slot the model reports the first channel not yet reported in scan
// order together with every unreported channel of the same source.
TEST(WriteEdl, EveryEventOfRandomTimelinesAsTheModelSays) {
  for (uint32_t seed = 1; seed <= 20; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 rnd(seed);
    tcs_test::OpenedSpace space;
    std::vector<std::string> expected;
    uint32_t t = seed % 2 == 0 ? 0 : Draw(rnd, 40);
    for (int slot = 0; slot < 12; ++slot) {
      const uint32_t lengths[2] = {1 + Draw(rnd, 60), 1 + Draw(rnd, 60)};
      std::vector<Laid> laid;
      for (uint32_t c : kScanOrder) {
        const uint32_t s = Draw(rnd, 2);
        laid.push_back({c, t, lengths[s], 1000 * s + 7, "src" + std::to_string(slot) + "ab"[s],
                        std::to_string(slot) + "k" + std::to_string(c),
                        std::array{0u, 1u, 9u, 47u, 500u}[Draw(rnd, 5)], Draw(rnd, 2) * 10});
        if (Draw(rnd, 4) != 0) laid.pop_back();
      }
      const bool any = !laid.empty();
      while (!laid.empty()) {
        const Laid lead = laid.front();
        uint32_t masks[2] = {0, 0};
        for (const Laid& l : laid) {
          if (l.name == lead.name) masks[l.channel / 32] |= 1u << l.channel % 32;
        }
        expected.push_back(Lay(space.get(), lead, masks[0], masks[1]));
        laid.erase(laid.begin());
        std::erase_if(laid, [&](const Laid& l) {
          return l.name == lead.name && !Lay(space.get(), l, 0, 0).empty();
        });
      }
      t += (any ? std::max(lengths[0], lengths[1]) : 0) + Draw(rnd, 3) * Draw(rnd, 30);
    }
    Lay(space.get(), {5, Draw(rnd, t + 1), 1 + Draw(rnd, 90), 0, "hidden", "h"}, 0, 0);
    Lay(space.get(), {50, 0, t + 1, 0, "hidden", "h"}, 0, 0);

    rec = Recording();
    EDLSETTINGS settings{};
    settings.revision = 1;
    settings.framesPerSecond = 25;
    settings.lineWord = 0x5A5A;
    ASSERT_EQ(tcsWriteEdl(space.get(), "walk.edl", 0, &settings), 0u);
    EXPECT_EQ(rec.lines, expected);
    EXPECT_EQ(std::memcmp(&rec.settings, &settings, sizeof settings), 0);
    EXPECT_NE(rec.settings_address, &settings);
    EXPECT_EQ((std::array{rec.opens, rec.closes}), (std::array{1, 1}));
    EXPECT_EQ(rec.access_creation, (std::array{0x40000000u, 2u}));
    EXPECT_EQ(std::set(rec.line_addresses.begin(), rec.line_addresses.end()).size(), 1u);
  }
}

// A source out one frame before the source in gives a length of 0xFFFFFFFF,
// which the add keeps: the record at 100 ends, wrapped, at 99 inside the clip
// before it, and the walk goes round 50, 100, 300, 50 ... The export writes
// the round once and ends.
TEST(WriteEdl, EndsWhenWrappedLengthsSendTheWalkBack) {
  tcs_test::OpenedSpace space;
  for (auto [video, record_in, source_out] :
       {std::array{1u, 50u, 51u}, {1u, 100u, 0u}, {2u, 300u, 51u}}) {
    EDLLINE line{};
    line.clip.videoMask = video;
    line.recordIn = record_in;
    line.clip.sourceIn = 1;
    line.clip.sourceOut = source_out;
    ASSERT_EQ(_tcsAddEdlLine(space.get(), &line, 0), 0u);
  }
  rec = Recording();
  ASSERT_EQ(tcsWriteEdl(space.get(), "wrapped.edl", 0, nullptr), 0u);
  EXPECT_EQ(rec.lines, (std::vector<std::string>{
                           "50-100 src 1-51 v1 a0 x0 C0/0 Ffff0 w0 [||||]",
                           "100-99 src 1-0 v1 a0 x0 C0/0 Ffff0 w0 [||||]",
                           "300-350 src 1-51 v2 a0 x0 C0/0 Ffff0 w0 [||||]"}));
  EXPECT_EQ(rec.closes, 1);
}

// The old file goes before the translator is asked, also when it then fails
// (unlogged); an empty space gives a file without lines; without a caller's
// block the translator gets revision 1 and zeros; a bad handle leaves the old
// file alone (its status and log are the bad-input table's).
TEST(WriteEdl, FileAndSettingsOutcomes) {
  tcs_test::TempDir dir;
  const std::string path = dir.File("out.edl");
  tcs_test::LogCapture log;
  tcs_test::OpenedSpace space;
  EDLSETTINGS revision_only{};
  revision_only.revision = 1;
  tcs_test::WriteFile(path, "old");
  rec = Recording();
  rec.fail_open = true;
  EXPECT_EQ(tcsWriteEdl(space.get(), path.c_str(), 0, nullptr), 0xFFFFFFFFu);
  EXPECT_FALSE(std::filesystem::exists(path));
  EXPECT_EQ((std::array{rec.opens, rec.closes}), (std::array{1, 0}));
  EXPECT_EQ(rec.path, path);
  EXPECT_EQ(std::memcmp(&rec.settings, &revision_only, sizeof revision_only), 0);
  EXPECT_TRUE(log.Lines().empty());
  rec = Recording();
  EXPECT_EQ(tcsWriteEdl(space.get(), path.c_str(), 0, nullptr), 0u);
  EXPECT_EQ((std::array{rec.opens, rec.closes, static_cast<int>(rec.lines.size())}),
            (std::array{1, 1, 0}));
  tcs_test::WriteFile(path, "old");  // a bad handle deletes nothing
  rec = Recording();
  EXPECT_EQ(tcsWriteEdl(nullptr, path.c_str(), 0, nullptr), 0xA8080004u);
  EXPECT_EQ(tcs_test::ReadFile(path) + std::to_string(rec.opens), "old0");
}

}  // namespace
