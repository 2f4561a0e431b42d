// The line exchange: lines imported onto their channels, and lines pulled one
// by one, checked against every channel's play clips listed by brute force.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <bit>
#include <map>
#include <random>
#include <string>
#include <tuple>
#include <vector>

#include "support/log_capture.h"
#include "support/test_clips.h"
#include "tcs.h"

namespace {

constexpr uint32_t kNoMore = 0x80000001u;

uint32_t Draw(std::mt19937& rnd, uint32_t n) { return static_cast<uint32_t>(rnd() % n); }

// A channel's play clips: start, length, record.
std::vector<std::tuple<uint32_t, uint32_t, const CClip*>> PlayClips(const CTimeCodeSpace& space,
                                                                    uint32_t channel) {
  std::vector<std::tuple<uint32_t, uint32_t, const CClip*>> clips;
  if (const CTCLookup* lookup = space.LookupOf(channel)) {
    for (const auto& node : *lookup) clips.emplace_back(node.start, node.length, node.clip);
  }
  return clips;
}

unsigned int RefuseFirst(void* count, CTimeCodeSpace*, CClip*) {
  return (*static_cast<int*>(count))++ == 0 ? 1 : 0;
}

// Each line names video 0 and 2 and audio 0; the host refuses the first add,
// which is logged, and the others go on: records on channels 2 and 32, with
// the tag and the range and transition of the table; recordOut, transition
// and auxMask hold junk that must not be read.
TEST(EdlLineImport, ChannelsRangeAndTransitionFromTheLine) {
  struct Case {
    uint32_t record_in, source_in, source_out, code, duration;
    uint32_t start, length, want_duration;
    const char* text;
  } const cases[] = {
      {100, 1000, 1250, 0, 0, 100, 250, 0, ""},
      {20000000, 0, 10692000, 1, 0, 10692000, 10692000, 0, ""},
      {10691990, 0, 100, 1, 0xFFFFFFFF, 10691990, 11, 20, "Horizontal"},
      {0, 5, 4, 47, 3, 0, 10692001, 3, "Cross"},  // wraps past the end: cut
  };
  for (const Case& c : cases) {
    tcs_test::LogCapture log;
    tcs_test::OpenedSpace space;
    int adds = 0;
    tcsSetAddCallback(space.get(), &adds, &RefuseFirst);
    EDLLINE line{};
    line.clip = {c.source_in, c.source_out, 0, 0, {}, 0x5, 0x1, 0xFF, nullptr, nullptr, nullptr,
                 nullptr, {}};
    line.recordIn = c.record_in;
    line.recordOut = 3;
    line.transition = 'W';
    line.effectCode = c.code;
    line.effectDuration = c.duration;
    ASSERT_EQ(_tcsAddEdlLine(space.get(), &line, 0xABCDEF0123ull), 0u);
    EXPECT_EQ(log.Lines(), std::vector<std::string>{"TCSpace(0xA808F01A)"});
    for (uint32_t channel = 0; channel < 96; ++channel) {
      const auto clips = PlayClips(*space, channel);
      ASSERT_EQ(clips.size(), channel == 2 || channel == 32 ? 1u : 0u);
      if (clips.empty()) continue;
      const CClip& r = *std::get<2>(clips[0]);
      EXPECT_EQ((std::tuple{r.start, r.length, r.effectCode, r.effectDuration,
                            std::string(r.effectText), r.videoMask, r.audioMask, r.hostTag}),
                (std::tuple{c.start, c.length, c.code, c.want_duration, std::string(c.text),
                            channel < 32 ? 0x5u : 0u, 0x1u, 0xABCDEF0123ull}))
          << "recordIn " << c.record_in << " channel " << channel;
    }
  }
}

// A line as seen: channel, record in and out, source in and out, name.
using Seen = std::tuple<uint32_t, uint32_t, uint32_t, uint32_t, uint32_t, std::string>;

// Pulls lines up to the end line, checking that a line keeps the caller's
// five text pointers and never writes the comment buffer.
std::vector<Seen> Pull(CTimeCodeSpace* space, uint32_t first, size_t max) {
  char name[64], comment[] = "keep";
  std::vector<Seen> seen;
  for (size_t i = 0; i <= max; ++i) {
    EDLLINE line{};
    line.clip = {0, 0, 0, 0, {}, 0, 0, 0, nullptr, name, comment, nullptr, {}};
    EXPECT_EQ(_tcsGetEdlLine(space, &line, 0, i == 0 ? first : 0), 0u);
    EXPECT_EQ((std::array<const void*, 3>{line.clip.name, line.clip.comment, line.clip.clipName}),
              (std::array<const void*, 3>{name, comment, nullptr}));
    EXPECT_EQ(std::string(comment), "keep");
    const uint64_t masks = line.clip.videoMask | uint64_t{line.clip.audioMask} << 32;
    if (line.recordIn == kNoMore) {
      EXPECT_EQ((std::tuple{line.recordOut, masks | line.clip.auxMask}), (std::tuple{kNoMore, 0u}));
      return seen;
    }
    EXPECT_EQ(std::popcount(masks) + std::popcount(line.clip.auxMask), 1);
    const uint32_t aux = line.clip.auxMask;
    const int channel = masks != 0 ? std::countr_zero(masks) : 64 + std::countr_zero(aux);
    seen.emplace_back(channel, line.recordIn,
                      line.recordOut, line.clip.sourceIn, line.clip.sourceOut, name);
  }
  ADD_FAILURE() << "no end after " << max << " lines";
  return seen;
}

// Random clips on random channels of 0..95. The first line: the highest
// channel with a clip at frame 0, else channel 0's first clip, else the first
// play clip by start and channel; then every other play clip by start and
// channel, once; then the end line, after which the pull starts over.
TEST(EdlLinePull, EveryPlayClipOnceAfterTheScansChoice) {
  tcs_test::LogCapture log;
  std::map<std::string, int> first_rules;
  for (uint32_t seed = 1; seed <= 40; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 rnd(seed);
    tcs_test::OpenedSpace space;
    const uint32_t kind = seed % 3;  // 0: clips at frame 0; 1: none; 2: none, none on channel 0
    for (uint32_t i = 0, n = seed == 3 ? 0 : 1 + Draw(rnd, 25); i < n; ++i) {
      uint32_t channel =
          Draw(rnd, 4) == 0 ? Draw(rnd, 96) : std::array{0u, 2u, 32u, 70u}[Draw(rnd, 4)];
      if (kind == 2 && channel == 0) channel = 95;
      // Past seed 20 the starts crowd together: lines that start together or
      // a frame apart on many channels.
      const uint32_t spread = seed > 20 ? 6 : 400;
      const uint32_t start = kind == 0 && Draw(rnd, 3) == 0 ? 0 : 1 + Draw(rnd, spread);
      const std::string name = "n" + std::to_string(i);
      auto clip = tcs_test::MakeClip(start, 1 + Draw(rnd, 80), 100 * i, name.c_str());
      ASSERT_EQ(tcsAddClip(space.get(), clip.get(), channel), 0u);
    }
    std::vector<Seen> expected;
    for (uint32_t c = 0; c < 96; ++c) {
      for (const auto& [start, length, record] : PlayClips(*space, c)) {
        const char* name = record->name;  // by value: the field is unaligned
        expected.emplace_back(c, start, start + length, record->sourceIn,
                              record->sourceIn + record->length, name);
      }
    }
    std::sort(expected.begin(), expected.end(), [](const Seen& a, const Seen& b) {
      return std::tie(std::get<1>(a), std::get<0>(a)) < std::tie(std::get<1>(b), std::get<0>(b));
    });
    auto at = [](uint32_t t) { return [t](const Seen& s) { return std::get<1>(s) == t; }; };
    auto lead = std::find_if(expected.rbegin(), expected.rend(), at(0)).base();
    if (lead != expected.begin()) {
      ++first_rules["highest at 0"];
      --lead;
    } else {
      lead = std::find_if(expected.begin(), expected.end(),
                          [](const Seen& s) { return std::get<0>(s) == 0; });
      ++first_rules[lead != expected.end() ? "channel 0" : expected.empty() ? "empty" : "order"];
      if (lead == expected.end()) lead = expected.begin();
    }
    if (lead != expected.end()) std::rotate(expected.begin(), lead, lead + 1);
    EXPECT_EQ(Pull(space.get(), 1, expected.size() + 2), expected);
    EXPECT_EQ(Pull(space.get(), 0, expected.size() + 2), expected);  // over again
    if (expected.size() > 2) {  // two lines, a null line that moves nothing, the rest
      EDLLINE line{};
      EXPECT_EQ((std::array{_tcsGetEdlLine(space.get(), &line, 0, 1),
                            _tcsGetEdlLine(space.get(), &line, 0, 0),
                            _tcsGetEdlLine(space.get(), nullptr, 0, 0)}),
                (std::array{0u, 0u, 0xA8080005u}));
      EXPECT_EQ(Pull(space.get(), 0, expected.size()),
                std::vector<Seen>(expected.begin() + 2, expected.end()));
    }
  }
  EXPECT_EQ(first_rules.size(), 4u);
}

// Nothing on channel 0 nor at frame 0: the scan's lookup finds nothing while
// the scratch play clip still names a record that is gone (ASan sees any
// read of it). The line is the first play clip instead; its name is cut to
// the buffer's 4096 bytes.
TEST(EdlLinePull, NeverFromAStalePlayClip) {
  tcs_test::OpenedSpace space;
  auto gone = tcs_test::MakeClip(10, 10, 0, "gone");
  ASSERT_EQ(tcsAddClip(space.get(), gone.get(), 3), 0u);
  CClip* found = nullptr;
  ASSERT_EQ(tcsFindClip(space.get(), 24, 10, &found, 3), 10u);
  space->ModifyRange(0, 100, 0x8, 0, TCS_EDIT_BLANK);
  const std::string long_name(5000, 'n');
  auto kept = tcs_test::MakeClip(50, 10, 70, long_name.c_str());
  ASSERT_EQ(tcsAddClip(space.get(), kept.get(), 7), 0u);
  std::vector<char> name(4200, 'x');
  EDLLINE line{};
  line.clip.name = name.data();
  ASSERT_EQ(_tcsGetEdlLine(space.get(), &line, 0, 1), 0u);
  EXPECT_EQ((std::array{line.recordIn, line.recordOut, line.clip.sourceIn, line.clip.sourceOut,
                        line.clip.videoMask}),
            (std::array{50u, 60u, 70u, 80u, 0x80u}));
  EXPECT_EQ(std::string(name.data()) + name[4096], long_name.substr(0, 4095) + 'x');
}

}  // namespace
