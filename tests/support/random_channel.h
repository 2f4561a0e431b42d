// Helpers for the random model tests: uniform draws from a seeded engine, a
// record laid straight onto a channel's list and lookup (bypassing the edit
// that AddClip makes), and a loop over seeds a developer can move.
#ifndef TCS_TESTS_SUPPORT_RANDOM_CHANNEL_H_
#define TCS_TESTS_SUPPORT_RANDOM_CHANNEL_H_

#include <cstdint>
#include <functional>
#include <random>

#include "tcs.h"

namespace tcs_test {

// Uniform draws in [lo, hi] (hi - lo below 2^32 - 1).
struct Dice {
  explicit Dice(uint64_t seed) : rng(seed) {}
  uint32_t operator()(uint32_t lo, uint32_t hi) { return uint32_t(lo + rng() % (hi - lo + 1)); }
  std::mt19937_64 rng;
};

// Lists a copy of `made` on `channel` and inserts its play clip as it is,
// overlaps and all, into the channel's lookup (made on first use). Without
// `keep_record` the play clip has no record. Answers the listed record.
CClip* LayPlayClip(CTimeCodeSpace& space, uint32_t channel, CClip& made, bool keep_record = true);

// Calls play(seed) for `runs` seeds from `first`, until a failure; the
// environment variables <prefix>_SEED and <prefix>_RUNS override both.
void ForEachSeed(const char* prefix, uint64_t first, uint64_t runs,
                 const std::function<void(uint64_t)>& play);

}  // namespace tcs_test

#endif  // TCS_TESTS_SUPPORT_RANDOM_CHANNEL_H_
