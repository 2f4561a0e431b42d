// The clip walk stepped through tcsFindNextClip on small hand-laid timelines.
#include <gtest/gtest.h>

#include <iterator>
#include <string>
#include <vector>

#include "command/walk_test_util.h"
#include "support/log_capture.h"

namespace {

using tcs_test::Laid;
using tcs_test::Lay;
using tcs_test::Step;
using tcs_test::WalkAll;
using tcs_test::WalkRecord;

constexpr uint32_t kEnd = 0x80000001u;
constexpr uint32_t kNone = 0xFFFFFFFFu;

std::string Text(TCSCMD& record) { return TcsCmdReplyText(record); }

//   ch 0   |A (1000)...|C (3000)...|
//   ch 1        |B..|
//   ch 32  |A2 (A's source)|
TEST(ClipWalk, WalksTheThreeChannelExampleEventByEvent) {
  tcs_test::OpenedSpace space;
  Lay(space.get(), {{0, 0, 100, 1000, "A", 1500}, {0, 100, 100, 3000, "C"},
                    {32, 0, 100, 1000, "A", 1500}, {1, 50, 30, 2000, "B"}});
  TCSCMD record = WalkRecord();
  struct Expected {
    Step step;
    uint32_t in, out;
    const char* text;
  };
  const Expected expected[] = {{{0, 0x1, 0x1}, 1000, 1100, "A"},
                               {{50, 0x3, 0x1}, 2000, 2030, "B"},
                               {{100, 0x1, 0x0}, 3000, 3100, "C"},
                               {{kEnd, 0, 0}, kNone, kNone, "C"}};
  for (const Expected& e : expected) {
    SCOPED_TRACE(e.text);
    const uint32_t r = tcsFindNextClip(space.get(), &record, 0, nullptr);
    EXPECT_EQ((Step{r, record.videoMask, record.audioMask}), e.step);
    EXPECT_EQ(record.position, r == kEnd ? kNone : r);
    EXPECT_EQ(record.inPoint, e.in);
    EXPECT_EQ(record.outPoint, e.out);
    EXPECT_EQ(record.auxMask, 0u);
    EXPECT_EQ(record.flags, 0x2560u);  // kept at the end
    EXPECT_EQ(Text(record), e.text);
  }
}

// Same start on two searched channels: one event when the sources agree
// (a missing name agrees with any), else one per channel in scan order.
TEST(ClipWalk, SameStartClipsAreLinkedOnlyWhenTheirSourcesAgree) {
  struct Case {
    const char* what;
    std::vector<Laid> clips;
    std::vector<Step> steps;
  };
  const Case cases[] = {
      {"same source and name", {{0, 10, 50, 700, "x"}, {32, 10, 50, 700, "x"}},
       {{10, 0x1, 0x1}, {kEnd, 0, 0}}},
      {"one name missing", {{0, 10, 50, 700, "x"}, {32, 10, 50, 700, nullptr}},
       {{10, 0x1, 0x1}, {kEnd, 0, 0}}},
      {"names differ", {{0, 10, 50, 700, "x"}, {32, 10, 50, 700, "y"}},
       {{10, 0x1, 0x0}, {10, 0x1, 0x1}, {kEnd, 0, 0}}},
      {"source in differs", {{0, 10, 50, 700, "x"}, {32, 10, 50, 701, "x"}},
       {{10, 0x1, 0x0}, {10, 0x1, 0x1}, {kEnd, 0, 0}}},
      {"source out differs", {{0, 10, 50, 700, "x", 900}, {32, 10, 50, 700, "x"}},
       {{10, 0x1, 0x0}, {10, 0x1, 0x1}, {kEnd, 0, 0}}},
      {"length differs", {{0, 10, 50, 700, "x"}, {32, 10, 49, 700, "x"}},
       {{10, 0x1, 0x0}, {10, 0x1, 0x1}, {kEnd, 0, 0}}},
      {"channels 0 and 2, different sources", {{2, 10, 50, 1, "p"}, {0, 10, 50, 2, "q"}},
       {{10, 0x1, 0x0}, {10, 0x5, 0x0}, {kEnd, 0, 0}}},
      {"unsearched channels never", {{4, 0, 9, 0, "u"}, {48, 0, 9, 0, "u"}, {95, 5, 5, 0, nullptr},
                                     {31, 20, 5, 0, nullptr}, {3, 20, 5, 0, nullptr}},
       {{20, 0x8, 0x0}, {kEnd, 0, 0}}},
      {"empty space", {}, {{kEnd, 0, 0}}},
      // A channel reported at an earlier position stays marked until a
      // restart: X2 starts where the cursor lands, is passed over there and
      // is behind the cursor after the restart, so it is never reported.
      {"carried mark hides a clip", {{0, 0, 10, 1, "X"}, {0, 10, 10, 2, "X2"},
                                     {1, 5, 95, 3, "Y"}, {2, 10, 20, 4, "Z"}},
       {{0, 0x1, 0}, {5, 0x3, 0}, {10, 0x7, 0}, {kEnd, 0, 0}}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    tcs_test::OpenedSpace space;
    Lay(space.get(), c.clips);
    TCSCMD record = WalkRecord();
    EXPECT_EQ(WalkAll(space.get(), record), c.steps);
  }
}

// One step from a given record state. Cover search (TCSF_AT without TCSF_IN
// or TCSF_OUT) takes a clip covering the cursor: channel 0, else the highest
// video channel, else an audio channel, the marks aside. The limit, cursor +
// outPoint - inPoint (wrapping; none unless inPoint < outPoint), decides
// between a find with the marks kept and a restart one frame on without them.
TEST(ClipWalk, CoverSearchAndTheLimitDecideTheNextStep) {
  const std::vector<Laid> x_and_y = {{0, 0, 100, 0, "X"}, {1, 30, 10, 0, "Y"}};
  auto cover = [](std::vector<uint32_t> channels) {
    std::vector<Laid> clips = {{35, 60, 10, 5, nullptr}};  // starts after the cursor
    for (uint32_t ch : channels) clips.push_back({ch, 10, 90, 100 * ch, nullptr});
    return clips;
  };
  struct Case {
    std::vector<Laid> clips;
    uint32_t flags, position, video, in, out;
    Step step;
  };
  const Case cases[] = {
      {cover({0, 2, 33}), TCSF_AT, 50, 0, 0, 0, {10, 0x4, 0x0}},
      {cover({33}), TCSF_AT, 50, 0, 0, 0, {10, 0x0, 0x2}},
      {cover({0, 33, 40}), TCSF_AT, 50, 0, 0, 0, {10, 0x1, 0x0}},
      {cover({1, 3, 0}), TCSF_AT | TCSF_MODE | TCSF_TEXT, 50, 0, 0, 0, {10, 0x8, 0x0}},
      {cover({2}), TCSF_AT, 50, 0x4, 0, 0, {10, 0x4, 0x0}},
      {cover({}), TCSF_AT, 50, 0, 0, 0, {kEnd, 0, 0}},
      {cover({0, 2}), TCSF_AT | TCSF_IN, 50, 0, 0, 0, {60, 0, 0x8}},
      {cover({0, 2}), TCSF_AT | TCSF_OUT, 50, 0, 0, 0, {60, 0, 0x8}},
      {x_and_y, 0, 0, 0x1, 0, 20, {30, 0x2, 0}},           // 30 past the limit 20: restart
      {x_and_y, 0, 0, 0x1, 0, 30, {30, 0x2, 0}},
      {x_and_y, 0, 0, 0x1, 0, 31, {30, 0x3, 0}},           // before it: marks kept
      {x_and_y, 0, 0, 0x1, 50, 50, {30, 0x3, 0}},          // no limit
      {x_and_y, 0, 0, 0x1, 9, 3, {30, 0x3, 0}},
      {x_and_y, 0, 5, 0x1, 0, 0xFFFFFFFE, {30, 0x2, 0}},   // the limit wraps to 3
      {x_and_y, 0, 20, 0x1, 0, 0xFFFFFFFF, {30, 0x2, 0}},  // and to 19
  };
  for (size_t i = 0; i < std::size(cases); ++i) {
    SCOPED_TRACE(testing::Message() << "case " << i);
    const Case& c = cases[i];
    tcs_test::OpenedSpace space;
    Lay(space.get(), c.clips);
    TCSCMD record = WalkRecord(c.flags, c.position);
    record.videoMask = c.video;
    record.inPoint = c.in;
    record.outPoint = c.out;
    const uint32_t r = tcsFindNextClip(space.get(), &record, 0, nullptr);
    EXPECT_EQ((Step{r, record.videoMask, record.audioMask}), c.step);
  }
}

// A play clip without a record offers nothing; a null space or record
// answers the end of the walk, unlogged.
TEST(ClipWalk, MissingRecordsAndHandlesEndOrSkipWithoutACrash) {
  tcs_test::OpenedSpace space;
  Lay(space.get(), {{1, 0, 10, 0, "a"}, {0, 40, 10, 0, "b"}});
  CPlayClip bare;
  bare.start = 20;
  bare.length = 10;
  space->lookups[1]->playClips.insert(bare);
  TCSCMD record = WalkRecord();
  EXPECT_EQ(WalkAll(space.get(), record),
            (std::vector<Step>{{0, 0x2, 0}, {40, 0x1, 0}, {kEnd, 0, 0}}));
  record = WalkRecord(TCSF_AT, 25);
  EXPECT_EQ(tcsFindNextClip(space.get(), &record, 0, nullptr), kEnd);

  tcs_test::LogCapture log;
  record = WalkRecord(TCSF_TEXT, 7);
  record.videoMask = record.audioMask = record.auxMask = 0x3;
  EXPECT_EQ(tcsFindNextClip(nullptr, &record, 0, nullptr), kEnd);
  EXPECT_EQ((Step{record.position, record.videoMask, record.audioMask}), (Step{kNone, 0, 0}));
  EXPECT_EQ(record.inPoint, kNone);
  EXPECT_EQ(record.outPoint, kNone);
  EXPECT_EQ(record.auxMask, 0u);
  EXPECT_EQ(record.flags, TCSF_TEXT);
  EXPECT_EQ(tcsFindNextClip(space.get(), nullptr, 1, nullptr), kEnd);
  EXPECT_TRUE(log.Lines().empty());
}

}  // namespace
