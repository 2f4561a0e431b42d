// The whole playout day walked with tcsFindNextClip, event by event, as the
// EDL export walks a space.
#include <benchmark/benchmark.h>

#include <memory>

#include "bench_spaces.h"

namespace {

void BM_WalkPlayoutDay(benchmark::State& state) {
  const auto space = tcs_bench::PlayoutDay();
  auto record = std::make_unique<TCSCMD>();
  for (auto _ : state) {
    *record = TCSCMD{};
    record->command = TCSCMD_GET;
    record->subCommand = TCSSUB_NEXT;
    record->outPoint = 0xFFFFFFFFu;
    int events = 0;
    while (tcsFindNextClip(space.get(), record.get(), 0, nullptr) != 0x80000001u) ++events;
    if (events != tcs_bench::kDayEvents) state.SkipWithError("the day's events miscounted");
  }
  state.counters["events"] = tcs_bench::kDayEvents;
}

BENCHMARK(BM_WalkPlayoutDay)->Unit(benchmark::kMillisecond);

}  // namespace
