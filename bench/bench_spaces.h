// Spaces the benchmarks share: channels of back-to-back clips built through
// the public entry points, and the 24-hour playout days.
#ifndef TCS_BENCH_BENCH_SPACES_H_
#define TCS_BENCH_BENCH_SPACES_H_

#include <cstdint>
#include <memory>
#include <vector>

#include "tcs.h"

namespace tcs_bench {

inline constexpr uint32_t kClipLength = 10;

// An open space that closes itself.
struct SpaceCloser {
  void operator()(CTimeCodeSpace* space) const { tcsClose(space); }
};
using Space = std::unique_ptr<CTimeCodeSpace, SpaceCloser>;

Space OpenSpace();
// Channel 0 of a new space: clips at first, first + 10, ... of 10 frames,
// each with its own source and an empty effect text.
Space Channel(int64_t clips, uint32_t first);
// 4096 timecodes drawn over [0, clips * 10) with a fixed seed.
std::vector<uint32_t> Timecodes(int64_t clips);

// The playout day: 2,880 slots of 30 s (900 frames) on video channels 0..3
// and audio channels 32..47. Each slot holds seven sources; a source plays
// on one to three channels at once, which the walk reports as one event, so
// the day has 7 * 2,880 = 20,160 events.
Space PlayoutDay();
inline constexpr int kDaySlots = 2880;
inline constexpr int kDayEvents = 7 * kDaySlots;

// The staggered day: the same channels and slots, with clips of 880 frames;
// channel c plays the slot's source c mod 7, starting (c mod 7) * 13 frames
// into the slot, so most clips start while others play. The channels of one
// source start together: 20,160 events again.
Space StaggeredDay();
inline constexpr uint32_t kStaggeredLength = 880;

}  // namespace tcs_bench

#endif  // TCS_BENCH_BENCH_SPACES_H_
