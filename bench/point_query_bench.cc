// Point queries on one channel of 1k, 10k and 100k clips through the
// exported entry points, beside their floor: a binary search over a sorted
// array of starts plus one 4096-byte copy from a separate array of texts.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <vector>

#include "bench_spaces.h"

namespace {

using tcs_bench::kClipLength;

struct ArrayChannel {
  std::vector<uint32_t> starts;
  std::vector<uint32_t> lengths;
  std::vector<std::array<char, CTCRange::kEffectTextSize>> texts;
};

ArrayChannel MakeArrayChannel(int64_t clips) {
  ArrayChannel channel;
  channel.texts.resize(size_t(clips));
  for (int64_t i = 0; i < clips; ++i) {
    channel.starts.push_back(uint32_t(i) * kClipLength);
    channel.lengths.push_back(kClipLength);
  }
  return channel;
}

void BM_FloorPointQuery(benchmark::State& state) {
  const ArrayChannel channel = MakeArrayChannel(state.range(0));
  const std::vector<uint32_t> ts = tcs_bench::Timecodes(state.range(0));
  CPlayClip out;
  size_t i = 0;
  for (auto _ : state) {
    const uint32_t t = ts[i++ & 4095];
    const auto after = std::upper_bound(channel.starts.begin(), channel.starts.end(), t);
    const size_t k = size_t(after - channel.starts.begin()) - 1;
    if (t - channel.starts[k] < channel.lengths[k]) {
      out.start = channel.starts[k];
      out.length = channel.lengths[k];
      std::copy(channel.texts[k].begin(), channel.texts[k].end(), out.effectText);
    }
    benchmark::DoNotOptimize(out);
    benchmark::ClobberMemory();
  }
}

// Queries at random hits, each result kept from the optimiser.
template <typename Query>
void RunQueries(benchmark::State& state, Query query) {
  const auto space = tcs_bench::Channel(state.range(0), 0);
  const std::vector<uint32_t> ts = tcs_bench::Timecodes(state.range(0));
  CClip* clip = nullptr;
  size_t i = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(query(space.get(), ts[i++ & 4095], &clip));
    benchmark::ClobberMemory();
  }
}

void BM_Translate(benchmark::State& state) {
  RunQueries(state, [](CTimeCodeSpace* space, uint32_t t, CClip** clip) {
    return tcsTranslate(space, 0, t, clip, 0);
  });
}

// Mode 0x40: the play clip at t or nothing; the search copies it into the
// space's current play clip.
void BM_FindClip(benchmark::State& state) {
  RunQueries(state, [](CTimeCodeSpace* space, uint32_t t, CClip** clip) {
    return tcsFindClip(space, 0x40, t, clip, 0);
  });
}

BENCHMARK(BM_FloorPointQuery)->Arg(1000)->Arg(10000)->Arg(100000);
BENCHMARK(BM_Translate)->Arg(1000)->Arg(10000)->Arg(100000);
BENCHMARK(BM_FindClip)->Arg(1000)->Arg(10000)->Arg(100000);

}  // namespace
