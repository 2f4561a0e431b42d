// Point queries and head-of-channel ripple edits on one channel of 1k, 10k
// and 100k play clips, 10 frames each, back to back.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <memory>
#include <random>
#include <vector>

#include "lookup/lookup.h"
#include "platform/clip.h"
#include "space/space.h"

namespace {

constexpr uint32_t kClipLength = 10;

// Play clips at first, first + 10, ... on channel 0 of a fresh space.
std::unique_ptr<CTimeCodeSpace> Channel(int64_t clips, uint32_t first) {
  auto space = std::make_unique<CTimeCodeSpace>();
  for (int64_t i = 0; i < clips; ++i) {
    CClip record;
    record.start = first + uint32_t(i) * kClipLength;
    record.length = kClipLength;
    record.sourceIn = uint32_t(i) * 100;
    space->AddClip(0, &record, 0);
  }
  return space;
}

std::vector<uint32_t> Timecodes(int64_t clips) {
  std::mt19937 rng(301);
  std::vector<uint32_t> out(4096);
  for (uint32_t& t : out) t = rng() % uint32_t(clips * kClipLength);
  return out;
}

void BM_Find(benchmark::State& state) {
  const auto space = Channel(state.range(0), 0);
  const CTCLookup& lookup = *space->lookups[0];
  const std::vector<uint32_t> ts = Timecodes(state.range(0));
  size_t i = 0;
  for (auto _ : state) benchmark::DoNotOptimize(lookup.find(ts[i++ & 4095]));
}

void BM_Translate(benchmark::State& state) {
  const auto space = Channel(state.range(0), 0);
  const CTCLookup& lookup = *space->lookups[0];
  const std::vector<uint32_t> ts = Timecodes(state.range(0));
  CPlayClip out;
  size_t i = 0;
  for (auto _ : state) benchmark::DoNotOptimize(lookup.Translate(ts[i++ & 4095], out));
}

// Inserting one frame at 0 moves every play clip 2 frames later; a ripple
// delete of [0, 2) moves them back, untimed.
void BM_InsertRangeAtHead(benchmark::State& state) {
  const auto space = Channel(state.range(0), 0);
  CTCLookup& lookup = *space->lookups[0];
  for (auto _ : state) {
    lookup.ModifyRange(0, 1, TCS_EDIT_INSERT | TCS_EDIT_RIPPLE);
    state.PauseTiming();
    lookup.ModifyRange(0, 2, TCS_EDIT_DELETE | TCS_EDIT_RIPPLE);
    state.ResumeTiming();
  }
}

void BM_DeleteRangeAtHead(benchmark::State& state) {
  const auto space = Channel(state.range(0), 2);
  CTCLookup& lookup = *space->lookups[0];
  for (auto _ : state) {
    lookup.ModifyRange(0, 2, TCS_EDIT_DELETE | TCS_EDIT_RIPPLE);
    state.PauseTiming();
    lookup.ModifyRange(0, 1, TCS_EDIT_INSERT | TCS_EDIT_RIPPLE);
    state.ResumeTiming();
  }
}

BENCHMARK(BM_Find)->Arg(1000)->Arg(10000)->Arg(100000);
BENCHMARK(BM_Translate)->Arg(1000)->Arg(10000)->Arg(100000);
BENCHMARK(BM_InsertRangeAtHead)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_DeleteRangeAtHead)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMicrosecond);

}  // namespace
