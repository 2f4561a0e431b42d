// The clip walk (tcsFindNextClip): a model of its events on random timelines,
// and a table of the cases it leaves out (source out, cover search).
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <map>
#include <random>
#include <string>
#include <tuple>
#include <vector>

#include "support/test_clips.h"
#include "tcs.h"

namespace {

constexpr uint32_t kEnd = 0x80000001u;
constexpr uint32_t kNone = 0xFFFFFFFFu;

struct Laid {
  uint32_t channel, start, length, source_in;
  const char* name;
  uint32_t source_out = 0;  // 0: source_in + length
};

void Lay(CTimeCodeSpace* space, const std::vector<Laid>& clips) {
  for (const Laid& c : clips) {
    auto clip = tcs_test::MakeClip(c.start, c.length, c.source_in, c.name);
    if (c.source_out != 0) clip->sourceOut = c.source_out;
    ASSERT_EQ(tcsAddClip(space, clip.get(), c.channel), 0u);
  }
}

// One reported event: the answer, the record's video and audio masks, its
// inPoint and outPoint, and its text.
using Event = std::tuple<uint32_t, uint32_t, uint32_t, uint32_t, uint32_t, std::string>;

// Steps a walk as a host does, up to `max` events or the end, from a record
// without a limit (outPoint 0xFFFFFFFF at 0, else inPoint == outPoint). A
// copy stepped with fresh marks must answer the same clip.
std::vector<Event> Walk(CTimeCodeSpace* space, uint32_t flags = 0, uint32_t position = 0,
                        size_t max = 200) {
  TCSCMD record{};
  record.flags = flags;
  record.position = position;
  record.outPoint = position == 0 ? kNone : 0;
  std::vector<Event> events;
  while (events.size() < max) {
    TCSCMD copy = record;
    CClip got;
    const uint32_t peek = tcsFindNextClip(space, &copy, 1, &got);
    const uint32_t r = tcsFindNextClip(space, &record, 0, nullptr);
    if (space != nullptr) space->CheckInvariants();
    EXPECT_EQ(record.flags, r == kEnd && events.empty() ? flags : flags | 0x2560u);
    if (r == kEnd) {  // the end: all but the flags cleared
      EXPECT_EQ((std::array{peek, record.position, record.inPoint, record.outPoint,
                            record.videoMask | record.audioMask | record.auxMask}),
                (std::array{kEnd, kNone, kNone, kNone, 0u}));
      break;
    }
    EXPECT_EQ((std::array{peek, record.position, record.auxMask, got.start, got.sourceIn}),
              (std::array{r, r, 0u, r, record.inPoint}));
    events.emplace_back(r, record.videoMask, record.audioMask, record.inPoint, record.outPoint,
                        TcsCmdReplyText(record));
  }
  return events;
}

// Clips on searched channels start on shared cuts and end by the next one.
// Same-start clips often share a source; some differ in length or name.
std::vector<Laid> RandomTimeline(std::mt19937& rng) {
  const char* const names[] = {"n0", "n1", nullptr};
  auto pick = [&rng](uint32_t n) { return static_cast<uint32_t>(rng() % n); };
  std::vector<uint32_t> cuts{pick(4)};
  while (cuts.size() < 24) cuts.push_back(cuts.back() + 1 + pick(12));
  uint32_t own_in = 1000000;
  std::vector<Laid> clips;
  for (uint32_t channel = 0; channel < 48; channel += channel == 3 ? 29 : 1) {  // scan order
    for (size_t i = 0; i + 1 < cuts.size(); ++i) {
      const uint32_t start = cuts[i], room = cuts[i + 1] - start;
      if (pick(2 + channel % 3) != 0) continue;
      clips.push_back({channel, start, 1 + (pick(4) ? start * 7 : pick(99)) % room,
                       pick(2) ? start * 3 + 1 : own_in++, names[pick(4) ? start % 3 : pick(3)]});
    }
  }
  return clips;
}

// At each start, in scan order: the first clip not yet reported, with every
// other one there of the same length, source in and name (a missing name
// matches any). Marks gather until the walk moves on to the next start.
std::vector<Event> ModelEvents(const std::vector<Laid>& clips) {
  std::map<uint32_t, std::vector<Laid>> by_start;
  for (const Laid& c : clips) by_start[c.start].push_back(c);
  std::vector<Event> events;
  for (auto& [start, here] : by_start) {
    uint32_t marks[2] = {0, 0};
    while (!here.empty()) {
      const Laid f = here.front();
      auto linked = std::stable_partition(here.begin(), here.end(), [&f](const Laid& c) {
        return c.length != f.length || c.source_in != f.source_in ||
               (c.name && f.name && std::strcmp(c.name, f.name) != 0);
      });
      for (auto c = linked; c != here.end(); ++c) marks[c->channel / 32] |= 1u << c->channel % 32;
      here.erase(linked, here.end());
      events.emplace_back(start, marks[0], marks[1], f.source_in, f.source_in + f.length,
                          f.name ? f.name : "");
    }
  }
  return events;
}

// On timelines where no clip starts inside another, the walk reports every
// clip on the searched channels exactly once, in start order, and then ends.
// Copies of the clips on unsearched channels must never be reported.
TEST(ClipWalk, ReportsEverySearchedClipOnceInStartOrder) {
  const char* env = std::getenv("TCS_WALK_SEED");
  const uint32_t first = env != nullptr ? std::strtoul(env, nullptr, 10) : 300;
  for (uint32_t seed = first; seed < first + 20; ++seed) {
    SCOPED_TRACE(testing::Message() << "TCS_WALK_SEED=" << seed);
    std::mt19937 rng(seed);
    const std::vector<Laid> clips = RandomTimeline(rng);
    tcs_test::OpenedSpace space;
    for (Laid c : clips) {
      Lay(space.get(), {c});
      c.channel = rng() % 2 ? 4 + rng() % 28 : 48 + rng() % 48;
      if (rng() % 2) Lay(space.get(), {c});
      space->CheckInvariants();
    }
    EXPECT_EQ(Walk(space.get()), ModelEvents(clips));
  }
}

// Same-start clips differing only in source out are separate events (the
// model keeps source out at source in + length). The cover search (TCSF_AT alone)
// takes the highest video channel covering the cursor, else the first audio.
TEST(ClipWalk, LinksSameStartClipsAndPrefersVideoForCover) {
  auto cover = [](std::vector<uint32_t> channels) {
    std::vector<Laid> clips = {{35, 60, 10, 5, nullptr}};  // starts after the cursor at 50
    for (uint32_t ch : channels) clips.push_back({ch, 10, 90, 100 * ch, nullptr});
    return clips;
  };
  const std::tuple<std::vector<Laid>, uint32_t, std::vector<Event>> cases[] = {
      {{{0, 1, 5, 1, "x", 9}, {1, 1, 4, 1, "x", 9}, {2, 1, 5, 1, "x"}}, 0,  // length, source out
       {{1, 1, 0, 1, 6, "x"}, {1, 3, 0, 1, 5, "x"}, {1, 7, 0, 1, 6, "x"}}},
      {std::vector<Laid>{}, 0, {}},
      {cover({0, 2, 33}), TCSF_AT, {{10, 0x4, 0, 200, 290, ""}}},
      {cover({33, 40}), TCSF_AT, {{10, 0, 0x2, 3300, 3390, ""}}},
      {cover({}), TCSF_AT, {}},
      {cover({0, 2}), TCSF_AT | TCSF_IN, {{60, 0, 0x8, 5, 15, ""}}},
  };
  for (const auto& [clips, flags, expected] : cases) {
    SCOPED_TRACE(testing::Message() << "flags " << flags << testing::PrintToString(expected));
    tcs_test::OpenedSpace space;
    Lay(space.get(), clips);
    EXPECT_EQ(Walk(space.get(), flags, flags ? 50 : 0, flags == TCSF_AT ? 1 : 9), expected);
  }
}

}  // namespace
