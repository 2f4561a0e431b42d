// The playout days walked with tcsFindNextClip, event by event, as the EDL
// export walks a space.
#include <benchmark/benchmark.h>

#include <memory>

#include "bench_spaces.h"

namespace {

void Walk(benchmark::State& state, CTimeCodeSpace* space, int expected_events) {
  auto record = std::make_unique<TCSCMD>();
  for (auto _ : state) {
    *record = TCSCMD{};
    record->command = TCSCMD_GET;
    record->subCommand = TCSSUB_NEXT;
    record->outPoint = 0xFFFFFFFFu;
    int events = 0;
    while (tcsFindNextClip(space, record.get(), 0, nullptr) != 0x80000001u) ++events;
    if (events != expected_events) state.SkipWithError("the day's events miscounted");
  }
  state.counters["events"] = expected_events;
}

void BM_WalkPlayoutDay(benchmark::State& state) {
  const auto space = tcs_bench::PlayoutDay();
  Walk(state, space.get(), tcs_bench::kDayEvents);
}

void BM_WalkStaggeredDay(benchmark::State& state) {
  const auto space = tcs_bench::StaggeredDay();
  Walk(state, space.get(), tcs_bench::kDayEvents);
}

BENCHMARK(BM_WalkPlayoutDay)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_WalkStaggeredDay)->Unit(benchmark::kMillisecond);

}  // namespace
