// Channel sets and names: every channel's name reads back as the channel,
// by name and by number, through the type and through the C entry points;
// joined names give the masks the command record expects; iteration visits
// the set in channel order.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "record/channel_set.h"
#include "support/log_capture.h"
#include "tcs.h"

namespace {

using tcs::ChannelSet;

TEST(ChannelSet, NamesReadBackAsTheirChannels) {
  for (uint32_t c = 0; c < 96; ++c) {
    const std::string name = ChannelSet::Name(c);
    EXPECT_EQ(ChannelSet::ParseName(name), c) << name;
    EXPECT_EQ(ChannelSet::ParseName(std::to_string(c)), c);
    char text[8];
    ASSERT_EQ(tcsChannelName(c, text, sizeof text), 0u);
    EXPECT_EQ(text, name);
    unsigned int masks[3] = {0, 0, 0};
    ASSERT_EQ(tcsParseChannels(text, &masks[0], &masks[1], &masks[2]), 0u);
    EXPECT_EQ(ChannelSet(masks[0], masks[1], masks[2]), ChannelSet::Of(c));
  }
  EXPECT_EQ(ChannelSet::Name(0), "V1");
  EXPECT_EQ(ChannelSet::Name(63), "A32");
  EXPECT_EQ(ChannelSet::Name(64), "X1");
  tcs_test::LogCapture quiet;
  for (const char* text : {"V0", "V33", "A0", "X33", "B1", "96", "", "V", "a-1", "V1+", "+A1", "V1++A1"}) {
    EXPECT_FALSE(ChannelSet::Parse(text)) << text;
    unsigned int masks[3];
    EXPECT_EQ(tcsParseChannels(text, &masks[0], &masks[1], &masks[2]), TCS_ERR_BAD_ARGUMENTS) << text;
  }
}

TEST(ChannelSet, JoinedNamesAreMaskWordsVisitedInChannelOrder) {
  const std::optional<ChannelSet> set = ChannelSet::Parse("a32+V2+v1+X3+A1+95");
  ASSERT_TRUE(set);
  EXPECT_EQ(set->video(), 0x3u);
  EXPECT_EQ(set->audio(), 0x80000001u);
  EXPECT_EQ(set->aux(), 0x80000004u);
  std::vector<uint32_t> visited;
  set->ForEach([&](uint32_t c) { visited.push_back(c); });
  EXPECT_EQ(visited, (std::vector<uint32_t>{0, 1, 32, 63, 66, 95}));
  EXPECT_EQ(set->Names(), "V1+V2+A1+A32+X3+X32");
  ChannelSet copy;
  for (uint32_t c : visited) copy.Add(c);
  copy.Add(96);  // not a channel: ignored
  EXPECT_EQ(copy, *set);
  copy.Remove(63);
  EXPECT_FALSE(copy.Has(63));
  EXPECT_TRUE(copy.Has(95));
}

}  // namespace
