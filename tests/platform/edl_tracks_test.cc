// Track fields: the writer's standard spellings and the spellings other tools
// use read as the channels they mean. (That every mask the writer spells reads
// back whole is EdlReader.ReadsBackWhatTheWriterWrites.)
#include <cstdint>
#include <string>

#include <gtest/gtest.h>

#include "platform/edl_text_tracks.h"

namespace tcs::translator {
namespace {

TEST(EdlTracks, StandardSpellingsBothWaysAndOtherToolsSpellings) {
  struct Case {
    const char* field;
    uint32_t video, audio;
    bool written;  // the writer spells these masks so
  };
  const Case cases[] = {
      {"V", 1, 0, 1},     {"A", 0, 1, 1},       {"A2", 0, 2, 1},       {"AA", 0, 3, 1},
      {"B", 1, 1, 1},     {"A2/V", 1, 2, 1},    {"AA/V", 1, 3, 1},     {"A3", 0, 4, 1},
      {"A4", 0, 8, 1},    {"A12", 0, 0x800, 1}, {"NONE", 0, 0, 1},     {"v", 1, 0, 0},
      {"aa/v", 1, 3, 0},  {"A/V", 1, 1, 0},     {"V2", 2, 0, 0},       {"A1", 0, 1, 0},
      {"a32", 0, 1u << 31, 0},                  {"none", 0, 0, 0}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.field);
    EXPECT_TRUE(!c.written || SpellTracks(c.video, c.audio).field == std::string(c.field));
    TrackMasks masks;
    ASSERT_TRUE(ParseTrackField(c.field, masks));
    EXPECT_EQ(masks.video, c.video);
    EXPECT_EQ(masks.audio, c.audio);
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
