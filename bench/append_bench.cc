// Building a channel: n clip records, already listed, appended to a lookup
// in start order, beside its floor, a std::set of n small keys built in
// order. And the memory a placed clip costs against the record it plays.
#include <benchmark/benchmark.h>
#include <malloc.h>

#include <cstdint>
#include <memory>
#include <set>
#include <vector>

#include "bench_spaces.h"
#include "space/space.h"

namespace {

using tcs_bench::kClipLength;

void BM_FloorSetBuild(benchmark::State& state) {
  for (auto _ : state) {
    auto keys = std::make_unique<std::set<uint32_t>>();
    for (int64_t i = 0; i < state.range(0); ++i) keys->insert(uint32_t(i) * kClipLength);
    benchmark::DoNotOptimize(keys->size());
    state.PauseTiming();
    keys.reset();
    state.ResumeTiming();
  }
}

// The space lists the records once; each round empties the lookups (records
// stay listed) and appends every record again.
void BM_AppendClips(benchmark::State& state) {
  const auto space = tcs_bench::Channel(state.range(0), 0);
  std::vector<CClip*> records;
  for (CClip* c = space->firstClip; c != nullptr; c = c->next) records.push_back(c);
  CTCLookup& lookup = *space->LookupOf(0);
  for (auto _ : state) {
    state.PauseTiming();
    space->DestroyLookup();
    state.ResumeTiming();
    for (CClip* record : records) lookup.AddClip(record, 0);
  }
}

size_t HeapInUse() { return mallinfo2().uordblks; }

// Bytes of heap per placed clip (record, play clip, share of the pooled
// texts and of the tree) against the bytes of the record alone.
void BM_MemoryPerClip(benchmark::State& state) {
  const int64_t clips = state.range(0);
  for (auto _ : state) {
    std::vector<std::unique_ptr<CClip>> bare;
    bare.reserve(size_t(clips));
    const size_t before_records = HeapInUse();
    for (int64_t i = 0; i < clips; ++i) {
      auto record = std::make_unique<CClip>();
      record->start = uint32_t(i) * kClipLength;
      record->length = kClipLength;
      bare.push_back(std::move(record));
    }
    const double record_bytes = double(HeapInUse() - before_records) / double(clips);
    bare.clear();

    const size_t before_space = HeapInUse();
    const auto space = tcs_bench::Channel(clips, 0);
    const double placed_bytes = double(HeapInUse() - before_space) / double(clips);
    state.counters["record_bytes"] = record_bytes;
    state.counters["placed_bytes"] = placed_bytes;
    state.counters["ratio"] = placed_bytes / record_bytes;
  }
}

BENCHMARK(BM_FloorSetBuild)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_AppendClips)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_MemoryPerClip)->Arg(100000)->Iterations(1)->Unit(benchmark::kMillisecond);

}  // namespace
