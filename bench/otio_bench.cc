// OpenTimelineIO interchange at 100,000 clips on three tracks (V1, A1, A2,
// one clip in three on each, back to back with a gap every tenth clip and a
// dissolve every seventh): writing the space as .otio text, reading that
// text into a fresh space, and beside them the JSON parse alone into
// nlohmann's plain document on the heap (the reader parses into its own
// arena instead). Then the two conversions a user makes:
// an EDL file to .otio text (edlReadFile, then the writer) and .otio text to
// an EDL file (the reader, then tcsWriteEdl). Items are clips.
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <nlohmann/json.hpp>
#include <string>

#include "otio/otio.h"
#include "tcs.h"

namespace {

constexpr int kClips = 100000;

struct Timeline {
  std::string text;     // the space as .otio
  std::string edlPath;  // the space as an EDL file
  uint64_t clips = 0;

  Timeline() : edlPath("/tmp/tcs_otio_bench_" + std::to_string(getpid()) + ".edl") {
    CTimeCodeSpace* space = tcsOpen(nullptr, nullptr, nullptr);
    uint32_t record[3] = {108000, 108000, 108000};
    for (int i = 0; i < kClips; ++i) {
      const int track = i % 3;
      const std::string name = "Clip_" + std::to_string(i) + ".mov";
      const std::string reel = "A" + std::to_string(i % 500);
      EDLLINE line;
      std::memset(&line, 0, sizeof line);
      const uint32_t length = 20 + uint32_t(i % 97);
      if (i % 10 == 0) record[track] += 12;
      line.clip.sourceIn = 90000 + uint32_t(i % 1000) * 300;
      line.clip.sourceOut = line.clip.sourceIn + length;
      if (track == 0) {
        line.clip.videoMask = 1;
      } else {
        line.clip.audioMask = 1u << (track - 1);
      }
      line.clip.name = const_cast<char*>(name.c_str());
      line.clip.reel = const_cast<char*>(reel.c_str());
      line.recordIn = record[track];
      line.recordOut = record[track] + length;
      if (i % 7 == 0) line.effectDuration = 10;
      record[track] += length;
      _tcsAddEdlLine(space, &line, 0);
    }
    clips = tcs::otio::WriteOtioText(space, {{25, false, false}, "bench"}, &text).clips;
    tcsWriteEdl(space, edlPath.c_str(), 0, nullptr);
    tcsClose(space);
  }
  ~Timeline() { std::remove(edlPath.c_str()); }
};

const Timeline& TheTimeline() {
  static const Timeline timeline;
  return timeline;
}

void Report(benchmark::State& state, uint64_t clips, size_t bytes) {
  state.SetItemsProcessed(int64_t(state.iterations() * clips));
  state.SetBytesProcessed(int64_t(state.iterations() * bytes));
}

void BM_WriteOtio(benchmark::State& state) {
  const Timeline& t = TheTimeline();
  CTimeCodeSpace* space = tcsOpen(nullptr, nullptr, nullptr);
  tcs::otio::ReadOtioText(space, t.text);
  std::string text;
  for (auto _ : state) {
    tcs::otio::WriteOtioText(space, {{25, false, false}, "bench"}, &text);
    benchmark::DoNotOptimize(text.data());
  }
  tcsClose(space);
  Report(state, t.clips, t.text.size());
}

void BM_ReadOtio(benchmark::State& state) {
  const Timeline& t = TheTimeline();
  for (auto _ : state) {
    CTimeCodeSpace* space = tcsOpen(nullptr, nullptr, nullptr);
    benchmark::DoNotOptimize(tcs::otio::ReadOtioText(space, t.text).clips);
    state.PauseTiming();
    tcsClose(space);
    state.ResumeTiming();
  }
  Report(state, t.clips, t.text.size());
}

void BM_ParseJsonOnly(benchmark::State& state) {
  const Timeline& t = TheTimeline();
  for (auto _ : state) {
    nlohmann::json document = nlohmann::json::parse(t.text);
    benchmark::DoNotOptimize(document.size());
  }
  Report(state, t.clips, t.text.size());
}

void BM_EdlToOtio(benchmark::State& state) {
  const Timeline& t = TheTimeline();
  std::string text;
  for (auto _ : state) {
    CTimeCodeSpace* space = tcsOpen(nullptr, nullptr, nullptr);
    edlReadFile(space, t.edlPath.c_str(), nullptr);
    tcs::otio::WriteOtioText(space, {{25, false, false}, "bench"}, &text);
    state.PauseTiming();
    tcsClose(space);
    state.ResumeTiming();
  }
  Report(state, t.clips, t.text.size());
}

void BM_OtioToEdl(benchmark::State& state) {
  const Timeline& t = TheTimeline();
  const std::string out = t.edlPath + ".out";
  for (auto _ : state) {
    CTimeCodeSpace* space = tcsOpen(nullptr, nullptr, nullptr);
    tcs::otio::ReadOtioText(space, t.text);
    tcsWriteEdl(space, out.c_str(), 0, nullptr);
    state.PauseTiming();
    tcsClose(space);
    state.ResumeTiming();
  }
  std::remove(out.c_str());
  Report(state, t.clips, t.text.size());
}

BENCHMARK(BM_WriteOtio)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_ReadOtio)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_ParseJsonOnly)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_EdlToOtio)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_OtioToEdl)->Unit(benchmark::kMillisecond)->Iterations(3);

}  // namespace
