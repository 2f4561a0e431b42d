#include "bench_spaces.h"

#include <array>
#include <cstdio>
#include <random>

namespace tcs_bench {

Space OpenSpace() { return Space(tcsOpen(nullptr, nullptr, nullptr)); }

Space Channel(int64_t clips, uint32_t first) {
  Space space = OpenSpace();
  CClip record;
  for (int64_t i = 0; i < clips; ++i) {
    record.ClearClip();
    record.start = first + uint32_t(i) * kClipLength;
    record.length = kClipLength;
    record.sourceIn = uint32_t(i) * 100;
    record.sourceOut = record.sourceIn + kClipLength;
    tcsAddClip(space.get(), &record, 0);
  }
  return space;
}

std::vector<uint32_t> Timecodes(int64_t clips) {
  std::mt19937 rng(301);
  std::vector<uint32_t> out(4096);
  for (uint32_t& t : out) t = rng() % uint32_t(clips * kClipLength);
  return out;
}

namespace {

constexpr uint32_t kSlot = 900;

// Where a channel's clip lies in each slot and which of the slot's seven
// sources it plays.
struct Placement {
  uint32_t channel;
  uint32_t offset;
  int source;
};
using DayLayout = std::array<Placement, 20>;

// A source plays on one to three channels at once, all at the slot's start.
constexpr DayLayout kAlignedLayout = {{{0, 0, 0},  {32, 0, 0}, {33, 0, 0}, {1, 0, 1},
                                       {34, 0, 1}, {35, 0, 1}, {2, 0, 2},  {36, 0, 2},
                                       {37, 0, 2}, {3, 0, 3},  {38, 0, 3}, {39, 0, 3},
                                       {40, 0, 4}, {41, 0, 4}, {42, 0, 4}, {43, 0, 5},
                                       {44, 0, 5}, {45, 0, 5}, {46, 0, 6}, {47, 0, 6}}};

// Channel c plays source c mod 7, (c mod 7) * 13 frames into the slot.
constexpr DayLayout StaggeredLayout() {
  constexpr uint32_t kChannels[] = {0,  1,  2,  3,  32, 33, 34, 35, 36, 37,
                                    38, 39, 40, 41, 42, 43, 44, 45, 46, 47};
  DayLayout layout{};
  for (size_t i = 0; i < layout.size(); ++i) {
    const uint32_t c = kChannels[i];
    layout[i] = Placement{c, c % 7 * 13, int(c % 7)};
  }
  return layout;
}

// Every slot of every listed channel holds one clip of `length` frames.
Space Day(uint32_t length, const DayLayout& layout) {
  Space space = OpenSpace();
  CClip record;
  char name[32];
  for (int slot = 0; slot < kDaySlots; ++slot) {
    for (const Placement& place : layout) {
      record.ClearClip();
      record.start = uint32_t(slot) * kSlot + place.offset;
      record.length = length;
      record.sourceIn = uint32_t(slot * 7 + place.source) * 1000;
      record.sourceOut = record.sourceIn + length;
      std::snprintf(name, sizeof name, "tape %d/%d", slot, place.source);
      record.SetName(name);
      tcsAddClip(space.get(), &record, place.channel);
    }
  }
  return space;
}

}  // namespace

Space PlayoutDay() { return Day(kSlot, kAlignedLayout); }

Space StaggeredDay() { return Day(kStaggeredLength, StaggeredLayout()); }

}  // namespace tcs_bench
