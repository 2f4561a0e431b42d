#include "bench_spaces.h"

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

Space PlayoutDay() {
  // The source each searched channel plays in a slot.
  static constexpr struct {
    uint32_t channel;
    int source;
  } kLayout[] = {{0, 0},  {32, 0}, {33, 0}, {1, 1},  {34, 1}, {35, 1}, {2, 2},
                 {36, 2}, {37, 2}, {3, 3},  {38, 3}, {39, 3}, {40, 4}, {41, 4},
                 {42, 4}, {43, 5}, {44, 5}, {45, 5}, {46, 6}, {47, 6}};
  constexpr uint32_t kSlot = 900;
  Space space = OpenSpace();
  CClip record;
  char name[32];
  for (int slot = 0; slot < kDaySlots; ++slot) {
    for (const auto& place : kLayout) {
      record.ClearClip();
      record.start = uint32_t(slot) * kSlot;
      record.length = kSlot;
      record.sourceIn = uint32_t(slot * 7 + place.source) * 1000;
      record.sourceOut = record.sourceIn + kSlot;
      std::snprintf(name, sizeof name, "tape %d/%d", slot, place.source);
      record.SetName(name);
      tcsAddClip(space.get(), &record, place.channel);
    }
  }
  return space;
}

}  // namespace tcs_bench
