// Point queries, Translate and the play-clip search, table-driven.
#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

#include "lookup/channel_fixture.h"
#include "lookup/timecode.h"

namespace {

using tcs::kLastStart;
using tcs::kNotFound;

constexpr int64_t kEnd = -1;  // the query returns end()

struct Placed {
  uint32_t start, length, source_in;
  uint32_t flags = 0;
};

void Lay(tcs_test::Channel& channel, const std::vector<Placed>& clips) {
  for (const Placed& c : clips) channel.Add(c.start, c.length, c.source_in, 0, c.flags);
}

int64_t StartOf(const CTCLookup& lookup, CTCLookup::Position x) {
  return x == lookup.end() ? kEnd : int64_t(x->start);
}

TEST(LookupQuery, FindleFindgeFind) {
  const std::vector<Placed> one = {{100, 100, 0}};
  const std::vector<Placed> two = {{0, 10, 0}, {20, 10, 0}};
  const std::vector<Placed> past_end = {{10, 10, 0}, {kLastStart + 50, 10, 0}};
  const std::vector<Placed> empty_clip = {{10, 0, 0}, {20, 10, 0}};
  // [10, 20) added with ripple inside [0, 100): the two overlap.
  const std::vector<Placed> overlap = {{0, 100, 0}, {10, 10, 0, TCS_EDIT_RIPPLE}};
  struct Row {
    const std::vector<Placed>* clips;
    uint32_t t;
    int64_t le, ge, at;
  };
  const std::vector<Placed> none;
  const Row rows[] = {
      {&none, 5, kEnd, kEnd, kEnd},
      {&one, 5, 100, 100, kEnd},
      {&one, 150, 100, 100, 100},
      {&one, 200, 100, kEnd, kEnd},
      {&one, 0xFFFFFFFF, 100, kEnd, kEnd},
      {&two, 15, 0, 20, kEnd},
      {&two, 10, 0, 20, kEnd},
      {&two, 9, 0, 0, 0},
      {&two, 20, 20, 20, 20},
      {&two, kLastStart + 1, 20, kEnd, kEnd},
      {&past_end, kLastStart, 10, kLastStart + 50, kEnd},
      {&past_end, kLastStart + 55, 10, kLastStart + 50, kEnd},
      {&empty_clip, 10, 10, 20, kEnd},
      {&empty_clip, 5, 10, 10, kEnd},
      {&overlap, 50, 10, kEnd, kEnd},
      {&overlap, 5, 0, 0, 0},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(::testing::Message() << "row at t " << row.t << ", " << row.clips->size());
    tcs_test::Channel channel;
    Lay(channel, *row.clips);
    const CTCLookup& lookup = channel.lookup();
    EXPECT_EQ(StartOf(lookup, lookup.findle(row.t)), row.le);
    EXPECT_EQ(StartOf(lookup, lookup.findge(row.t)), row.ge);
    EXPECT_EQ(StartOf(lookup, lookup.find(row.t)), row.at);
  }
}

TEST(LookupQuery, TranslateMeasuresFromSourceOrigin) {
  tcs_test::Channel channel;
  CClip* forward = channel.Add(0, 10, 100);
  forward->sourceOrigin = 40;
  CClip* backward = channel.Add(20, 10, 40);
  backward->sourceOrigin = 100;
  CClip stray;  // a record whose range disagrees with its play clip
  stray.start = 55;
  stray.length = 2;
  CPlayClip mismatched;
  mismatched.start = 50;
  mismatched.length = 10;
  mismatched.clip = &stray;
  channel.lookup().playClips.insert(mismatched);
  CPlayClip no_record;
  no_record.start = 40;
  no_record.length = 5;
  channel.lookup().playClips.insert(no_record);

  struct Row {
    uint32_t t, result;
    int64_t out_start;  // kEnd: out left alone
  } const rows[] = {{5, 65, 0}, {25, 65, 20}, {15, kNotFound, kEnd}, {42, kNotFound, 40},
                    {52, kNotFound, 50}, {56, 1, 50}};
  for (const Row& row : rows) {
    SCOPED_TRACE(::testing::Message() << "t " << row.t);
    CPlayClip out;
    out.start = 777;
    EXPECT_EQ(channel.lookup().Translate(row.t, out), row.result);
    EXPECT_EQ(out.start, row.out_start == kEnd ? 777u : uint32_t(row.out_start));
  }
}

TEST(LookupSearch, SelectorsGapPoliciesAndNearest) {
  // A = [0, 10) from source 100, B = [20, 30) from source 500; C alone = [10, 20)
  // from source 50.
  const std::vector<Placed> ab = {{0, 10, 100}, {20, 10, 500}};
  const std::vector<Placed> c = {{10, 10, 50}};
  const std::vector<Placed> none;
  struct Row {
    const std::vector<Placed>* clips;
    uint32_t mode, t, result;
    int64_t chosen;
  };
  const Row rows[] = {
      {&ab, 0x10, 5, 0, 0},     {&ab, 0x20, 5, 9, 0},      {&ab, 0x00, 5, 10, 0},
      {&ab, 0x30, 5, 10, 0},    {&ab, 0x40, 5, 5, 0},      {&ab, 0x50, 5, 10, 0},
      {&ab, 0x60, 5, 10, 0},    {&ab, 0x70, 5, 105, 0},    {&ab, 0x70, 25, 505, 20},
      {&ab, 0xFFFF0E90, 5, 0, 0},  // bits outside the three fields are ignored
      {&ab, 0x10, 15, kNotFound, kEnd},
      {&ab, 0x14, 15, 0, 0},    {&ab, 0x15, 15, 0, 0},     {&ab, 0x14, 35, 20, 20},
      {&ab, 0x18, 15, 20, 20},  {&ab, 0x19, 15, 20, 20},   {&ab, 0x110, 15, 20, 20},
      {&ab, 0x111, 15, 20, 20}, {&ab, 0x18, 35, kNotFound, kEnd},
      {&ab, 0x110, 35, kNotFound, kEnd},
      {&ab, 0x19, 35, 20, 20},  {&ab, 0x111, 35, 20, 20},  {&ab, 0x71, 35, 515, 20},
      {&ab, 0x12, 14, 0, 0},    {&ab, 0x12, 15, 20, 20},   {&ab, 0x11, 16, 20, 20},
      {&ab, 0x13, 14, 0, 0},    {&ab, 0x72, 12, 112, 0},   {&ab, 0x12, 40, 20, 20},
      {&ab, 0x1F, 15, 20, 20},  {&ab, 0x0E, 15, 30, 20},
      {&ab, 0x0C, 15, kNotFound, kEnd},
      {&ab, 0x118, 35, kNotFound, kEnd},
      {&c, 0x14, 5, 10, 10},    {&c, 0x74, 5, 45, 10},     {&c, 0x12, 5, 10, 10},
      {&c, 0x12, 25, 10, 10},   {&c, 0x18, 25, kNotFound, kEnd},
      {&none, 0x1F, 5, kNotFound, kEnd},
      {&none, 0x40, 0, kNotFound, kEnd},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(::testing::Message() << std::hex << "mode 0x" << row.mode << std::dec
                                      << " t " << row.t);
    tcs_test::Channel channel;
    Lay(channel, *row.clips);
    CPlayClip out;
    out.start = 777;
    EXPECT_EQ(channel.lookup().FindPlayClip(row.mode, row.t, out), row.result);
    EXPECT_EQ(out.start, row.chosen == kEnd ? 777u : uint32_t(row.chosen));
  }
}

}  // namespace
