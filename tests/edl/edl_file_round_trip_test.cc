// An EDL file written with tcsWriteEdl and read back with edlReadFile gives
// the same clips on the same channels.
#include <algorithm>
#include <cstdint>
#include <random>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "support/log_capture.h"
#include "support/temp_dir.h"
#include "support/test_clips.h"
#include "tcs.h"

namespace {

using tcs_test::OpenedSpace;

std::string Str(const char* text) { return text == nullptr ? "" : text; }

// What a channel plays, clip by clip, with everything an EDL carries.
using Played = std::tuple<uint32_t, uint32_t, uint32_t, std::string, std::string, std::string,
                          std::string, uint32_t, uint32_t, std::string>;

std::vector<Played> Channel(const CTimeCodeSpace& space, unsigned channel) {
  std::vector<Played> out;
  const CTCLookup* lookup = space.lookups[channel];
  if (lookup == nullptr) return out;
  for (auto p = lookup->begin(); p != lookup->end(); ++p) {
    const CClip& k = *p->clip;
    out.emplace_back(p->start, p->length, k.sourceIn, Str(k.name), Str(k.reel), Str(k.comment),
                     Str(k.clipName), k.effectCode, k.effectDuration, k.effectText);
  }
  return out;
}

// A few hundred clips, each on one to four of the exported channels, with
// names, reels, comments and effects. The export's walk hides a clip whose
// channel it reported while an earlier event still plays, so events follow
// one another in time; some pairs start together on different channels.
void Fill(CTimeCodeSpace* space, std::mt19937& rng) {
  // The channels an export names.
  const unsigned channels[] = {0, 1, 2, 3, 32, 33, 34, 35, 36, 37, 38, 39, 40, 41, 42, 43, 44, 45, 46, 47};
  const char* const reels[] = {"", "AX", "TAPE01", "A001C003", "A very long reel name"};
  const uint32_t codes[] = {0, 0, 1, 7, 9, 42, 503};
  uint32_t start = 0;
  uint32_t end = 0;
  std::vector<unsigned> taken;
  for (int i = 0; i < 300; ++i) {
    const bool together = i > 0 && rng() % 5 == 0 && taken.size() < 12;
    if (!together) {
      start = end + (rng() % 3 == 0 ? 0 : rng() % 400);
      taken.clear();
    }
    std::vector<unsigned> on;
    for (int k = 1 + int(rng() % 4); k > 0; --k) {
      const unsigned c = channels[rng() % std::size(channels)];
      if (std::find(taken.begin(), taken.end(), c) == taken.end()) on.push_back(c);
    }
    taken.insert(taken.end(), on.begin(), on.end());
    CClip clip;
    clip.ClearClip();
    clip.start = start;
    clip.length = 1 + rng() % 900;
    end = std::max(end, start + clip.length);
    clip.sourceIn = uint32_t(i) * 5000 + rng() % 1000;
    clip.sourceOut = clip.sourceIn + clip.length;
    clip.SetName(("clip " + std::to_string(i) + ".mov").c_str());
    clip.SetReel(reels[rng() % std::size(reels)]);
    if (rng() % 2) clip.SetComment(("take " + std::to_string(rng() % 9) + "\nsecond line").c_str());
    if (rng() % 2) clip.SetClipName(("c" + std::to_string(i)).c_str());
    const uint32_t duration = rng() % 3 == 0 ? 0 : 1 + rng() % 60;
    clip.SetEffect(codes[rng() % std::size(codes)], nullptr, duration);
    for (unsigned c : on) ASSERT_EQ(tcsAddClip(space, &clip, c), 0u);
  }
}

TEST(EdlFile, WrittenAndReadBackGivesTheSameClips) {
  tcs_test::TempDir dir;
  const std::string path = dir.File("round.edl");
  std::mt19937 rng(301);
  const std::pair<uint32_t, uint32_t> rates[] = {{30, 0}, {25, 0}, {30, 1}, {24, 0}};
  for (const auto& [fps, drop] : rates) {
    SCOPED_TRACE(fps + drop);
    OpenedSpace original;
    Fill(original.get(), rng);
    EDLSETTINGS settings;
    edlInitSettings(&settings, fps, drop);
    ASSERT_EQ(tcsWriteEdl(original.get(), path.c_str(), 0, &settings), 0u);

    // Read without settings: the file says its own rate.
    OpenedSpace copy;
    tcs_test::LogCapture log;
    ASSERT_EQ(edlReadFile(copy.get(), path.c_str(), nullptr), 0u);
    EXPECT_TRUE(log.Lines().empty()) << log.Lines()[0];
    size_t clips = 0;
    for (unsigned c = 0; c < 96; ++c) {
      ASSERT_EQ(Channel(*copy, c), Channel(*original, c)) << "channel " << c;
      clips += Channel(*original, c).size();
    }
    EXPECT_GT(clips, 500u);
  }
}

// A folder is no file: a status and a logged line. (Missing files, bad lines
// and spaces are the bad-input table's and EdlReader.StopsAtTheFirstBadLine.)
TEST(EdlFile, AFolderIsNoFile) {
  tcs_test::TempDir dir;
  OpenedSpace space;
  tcs_test::LogCapture log;
  EXPECT_EQ(edlReadFile(space.get(), dir.path().c_str(), nullptr), TCS_RESULT_NONE);
  EXPECT_EQ(log.Lines().size(), 1u);
}

// Clips that run past the end of the timeline are cut there, source out and
// all. Two such events that differ only in frames never played are then one
// source, one event in every export, and not two events that come back as
// one.
TEST(EdlFile, EventsCutAtTheEndOfTheTimelineSurviveARoundTrip) {
  tcs_test::TempDir dir;
  const std::string input = dir.File("long.edl");
  tcs_test::WriteFile(input,
                      "001  REEL8    B     C        10:00:00:00 12:00:00:00 01:00:00:00 700:00:00:00\n"
                      "002  TAPE2    A2    C        10:00:00:00 14:00:00:00 01:00:00:00 800:00:00:00\n");
  std::string exports[2];
  std::string from = input;
  for (std::string& written : exports) {
    OpenedSpace space;
    edlReadFile(space.get(), from.c_str(), nullptr);
    for (unsigned c : {0u, 32u, 33u}) {
      SCOPED_TRACE(c);
      const std::vector<Played> played = Channel(*space, c);
      ASSERT_EQ(played.size(), 1u);
      EXPECT_EQ(std::get<0>(played[0]) + std::get<1>(played[0]), tcs::kTimelineEnd);
      const CClip& k = *space->lookups[c]->begin()->clip;
      EXPECT_EQ(k.sourceOut - k.sourceIn, k.length);
    }
    from = dir.File(&written == exports ? "first.edl" : "second.edl");
    ASSERT_EQ(tcsWriteEdl(space.get(), from.c_str(), 0, nullptr), 0u);
    written = tcs_test::ReadFile(from);
    written.erase(0, written.find('\n'));  // the title names the file
  }
  EXPECT_EQ(exports[0], exports[1]);
  EXPECT_NE(exports[0].find("001  REEL8    AA/V"), std::string::npos) << exports[0];
}

}  // namespace
