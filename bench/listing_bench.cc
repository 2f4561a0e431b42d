// Listing every clip of a 100,000-clip channel through tcsGetClips, in
// batches of 256 rows, against the floor: a walk over a std::vector of the
// same clip records (pointers in record order) filling the same rows. Both
// read every record, a cache miss or two each; the listing adds the tree
// walk and the cursor.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <vector>

#include "bench_spaces.h"
#include "tcs.h"

namespace {

constexpr unsigned int kBatch = 256;

void BM_ListClips(benchmark::State& state) {
  const tcs_bench::Space space = tcs_bench::Channel(state.range(0), 0);
  std::vector<TCSCLIP> rows(kBatch);
  for (auto _ : state) {
    unsigned int from = 0;
    unsigned int count = 0;
    uint64_t sum = 0;
    do {
      tcsGetClips(space.get(), 0, from, TCS_NO_TIMECODE, rows.data(), kBatch, &count, &from);
      for (unsigned int i = 0; i < count; ++i) sum += rows[i].sourceIn + rows[i].length;
    } while (from != TCS_NO_TIMECODE);
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void BM_FloorListVector(benchmark::State& state) {
  const tcs_bench::Space space = tcs_bench::Channel(state.range(0), 0);
  std::vector<CClip*> records;
  for (const auto& pc : *space->lookups[0]) records.push_back(pc.clip);
  std::vector<TCSCLIP> rows(kBatch);
  for (auto _ : state) {
    uint64_t sum = 0;
    for (size_t at = 0; at < records.size(); at += kBatch) {
      const size_t count = std::min<size_t>(kBatch, records.size() - at);
      for (size_t i = 0; i < count; ++i) {
        const CClip* clip = records[at + i];
        const CLIPINFO* info = clip;
        TCSCLIP& row = rows[i];
        row.channel = 0;
        row.start = clip->start;
        row.length = clip->length;
        row.sourceIn = info->sourceIn;
        row.sourceOut = info->sourceOut;
        row.effectCode = clip->effectCode;
        row.effectDuration = clip->effectDuration;
        row.effectText = clip->effectText;
        row.clip = records[at + i];
        row.info = info;
      }
      for (size_t i = 0; i < count; ++i) sum += rows[i].sourceIn + rows[i].length;
      benchmark::ClobberMemory();
    }
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

BENCHMARK(BM_ListClips)->Arg(100000)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_FloorListVector)->Arg(100000)->Unit(benchmark::kMicrosecond);

}  // namespace
