// Ripple insert and delete at the head of one channel of 1k, 10k and 100k
// clips through tcsSetMode, beside their floor: a walk over a tree of small
// nodes that adds the offset to every start in place and rewrites each
// node's separate clip record. Each timed edit is undone untimed.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <memory>
#include <set>
#include <vector>

#include "bench_spaces.h"

namespace {

struct FloorNode {
  mutable uint32_t start;
  CClip* record;
  bool operator<(const FloorNode& other) const { return start < other.start; }
};

// A delete or insert with ripple of [in, out) on channel 0.
std::unique_ptr<TCSCMD> RippleCommand(uint32_t command, uint32_t in, uint32_t out) {
  auto record = std::make_unique<TCSCMD>();
  record->type = TCSCMD_TYPE;
  record->size = TCSCMD_SIZE;
  record->command = command;
  record->flags = TCSF_MARKS | TCSF_RIPPLE;
  record->videoMask = 1;
  record->inPoint = in;
  record->outPoint = out;
  return record;
}

void Shift(const std::set<FloorNode>& nodes, uint32_t by) {
  for (const FloorNode& node : nodes) {
    node.start += by;
    node.record->start = node.start;
  }
}

void BM_FloorShiftWalk(benchmark::State& state) {
  std::vector<std::unique_ptr<CClip>> records;
  for (int64_t i = 0; i < state.range(0); ++i) records.push_back(std::make_unique<CClip>());
  std::set<FloorNode> nodes;
  for (int64_t i = 0; i < state.range(0); ++i) {
    nodes.insert({uint32_t(i) * tcs_bench::kClipLength, records[size_t(i)].get()});
  }
  for (auto _ : state) {
    Shift(nodes, 2);
    state.PauseTiming();
    Shift(nodes, uint32_t(-2));
    state.ResumeTiming();
  }
}

// Times `timed` on a channel of state.range(0) clips from `first`, undoing
// it untimed with `undo` after each run.
void RunRipple(benchmark::State& state, uint32_t first, TCSCMD& timed, TCSCMD& undo) {
  const auto space = tcs_bench::Channel(state.range(0), first);
  for (auto _ : state) {
    tcsSetMode(space.get(), &timed);
    state.PauseTiming();
    tcsSetMode(space.get(), &undo);
    state.ResumeTiming();
  }
}

// Inserting [0, 1) opens two frames (one past the gap); deleting [0, 2)
// closes them.
void BM_RippleInsertAtHead(benchmark::State& state) {
  RunRipple(state, 0, *RippleCommand(TCSCMD_INSERT, 0, 1), *RippleCommand(TCSCMD_DELETE, 0, 2));
}

void BM_RippleDeleteAtHead(benchmark::State& state) {
  RunRipple(state, 2, *RippleCommand(TCSCMD_DELETE, 0, 2), *RippleCommand(TCSCMD_INSERT, 0, 1));
}

BENCHMARK(BM_FloorShiftWalk)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_RippleInsertAtHead)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_RippleDeleteAtHead)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMicrosecond);

}  // namespace
