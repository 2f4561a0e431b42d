// Track fields: what the writer spells reads back as the same channels, and
// the spellings other tools use read as the channels they mean.
#include <cstdint>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include "platform/edl_text_tracks.h"

namespace tcs::translator {
namespace {

TEST(EdlTracks, SpellingReadsBackAsTheSameChannels) {
  std::mt19937 rng(301);
  for (int i = 0; i < 20000; ++i) {
    // Sparse masks, as lines have them, and now and then dense ones.
    const uint32_t video = (i % 7 == 0) ? uint32_t(rng()) : uint32_t(rng() & rng() & rng() & 0xF);
    const uint32_t audio = (i % 5 == 0) ? uint32_t(rng()) : uint32_t(rng() & rng() & 0xFFFF);
    const TrackSpelling s = SpellTracks(video, audio);
    TrackMasks masks;
    ASSERT_TRUE(ParseTrackField(s.field, masks)) << s.field;
    // The field, AUD 3 4 and the leftovers share no channel and cover all.
    EXPECT_EQ(masks.video & s.extraVideo, 0u);
    EXPECT_EQ(masks.audio & s.extraAudio, 0u);
    const uint32_t aud = (s.aud3 ? 4u : 0u) | (s.aud4 ? 8u : 0u);
    EXPECT_EQ(masks.audio & aud, 0u);
    EXPECT_EQ(masks.video | s.extraVideo, video);
    EXPECT_EQ(masks.audio | aud | s.extraAudio, audio);
    // Only the first video track and audio tracks 1, 2 or the lowest alone.
    EXPECT_EQ(masks.video & ~1u, 0u);
    for (unsigned bit = 0; bit < 32; ++bit) {
      char name[4];
      TrackMasks one;
      if ((s.extraAudio >> bit) & 1u) {
        ASSERT_TRUE(ParseTrackField(std::string(name, TrackName(true, bit, name)), one));
        EXPECT_EQ(one.audio, 1u << bit);
      }
    }
  }
}

TEST(EdlTracks, StandardSpellingsBothWays) {
  struct Case {
    const char* field;
    uint32_t video, audio;
  };
  const Case cases[] = {{"V", 1, 0},     {"A", 0, 1},       {"A2", 0, 2},      {"AA", 0, 3},
                        {"B", 1, 1},     {"A2/V", 1, 2},    {"AA/V", 1, 3},    {"A3", 0, 4},
                        {"A4", 0, 8},    {"A12", 0, 0x800}, {"NONE", 0, 0}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.field);
    EXPECT_STREQ(SpellTracks(c.video, c.audio).field, c.field);
    TrackMasks masks;
    ASSERT_TRUE(ParseTrackField(c.field, masks));
    EXPECT_EQ(masks.video, c.video);
    EXPECT_EQ(masks.audio, c.audio);
  }
  // Other tools' spellings, any case.
  const Case read_only[] = {{"v", 1, 0},    {"aa/v", 1, 3}, {"A/V", 1, 1},  {"V2", 2, 0},
                            {"A1", 0, 1},   {"a32", 0, 1u << 31},           {"none", 0, 0}};
  for (const Case& c : read_only) {
    TrackMasks masks;
    ASSERT_TRUE(ParseTrackField(c.field, masks)) << c.field;
    EXPECT_EQ(masks.video, c.video) << c.field;
    EXPECT_EQ(masks.audio, c.audio) << c.field;
  }
  TrackMasks high;
  ASSERT_TRUE(ParseTrackField("A40", high));
  EXPECT_TRUE(high.dropped);
  for (const char* bad : {"", "X", "A0", "AV", "V/", "A123", "C", "W001"}) {
    TrackMasks masks{5, 6, false};
    EXPECT_FALSE(ParseTrackField(bad, masks)) << bad;
    EXPECT_EQ(masks.video, 5u);
  }
  // V with A3 and up: the audio goes to AUD 3 4 and the translator's note.
  const TrackSpelling s = SpellTracks(0x3, 0x1C);
  EXPECT_STREQ(s.field, "V");
  EXPECT_TRUE(s.aud3 && s.aud4);
  EXPECT_EQ(s.extraVideo, 0x2u);
  EXPECT_EQ(s.extraAudio, 0x10u);
}

}  // namespace
}  // namespace tcs::translator
