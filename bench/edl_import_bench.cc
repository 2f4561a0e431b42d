// EDL import: edlReadFile on a 100,000-event file against the floor, the same
// events handed to _tcsAddEdlLine as lines already parsed; and the export of
// the same space through tcsWriteEdl, against the translator's share of it
// and against the host kit's writer, which lists every clip of every channel.
// Items are events (lines of the EDL).
#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdint>
#include <malloc.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "cmx3600/rate_scan.h"
#include "edl_writer.h"
#include "tcs.h"

namespace {

constexpr int kEvents = 100000;

// Events back to back on V and A1 (a "B" track field), each with a name and
// a reel, every tenth with a dissolve and a comment.
struct Events {
  std::vector<EDLLINE> lines;
  std::vector<std::string> texts;  // the buffers the lines point into
  std::string path;

  Events() : path("/tmp/tcs_edl_import_bench_" + std::to_string(getpid()) + ".edl") {
    texts.reserve(kEvents * 3);
    lines.resize(kEvents);
    uint32_t record = 108000;
    for (int i = 0; i < kEvents; ++i) {
      EDLLINE& line = lines[i];
      line = EDLLINE{};
      const uint32_t length = 20 + uint32_t(i % 97);
      line.clip.sourceIn = 90000 + uint32_t(i % 1000) * 300;
      line.clip.sourceOut = line.clip.sourceIn + length;
      line.clip.videoMask = 1;
      line.clip.audioMask = 1;
      line.recordIn = record;
      line.recordOut = record + length;
      record += length;
      texts.push_back("Clip_" + std::to_string(i) + ".mov");
      line.clip.name = texts.back().data();
      // Appended, not a chain of +, which GCC 12 -O3 warns of falsely.
      std::string reel = "A";
      reel += std::to_string(i % 500);
      reel += "C00";
      reel += std::to_string(i % 7);
      texts.push_back(std::move(reel));
      line.clip.reel = texts.back().data();
      if (i % 10 == 0) {
        texts.push_back("checked by editor");
        line.clip.comment = texts.back().data();
        line.transition = EDLLINE_WIPE;
        line.effectDuration = 10;
      } else {
        line.transition = EDLLINE_CUT;
      }
    }
    void* file = edlOpen(path.c_str(), EDL_ACCESS_WRITE, EDL_CREATE_ALWAYS, nullptr);
    for (const EDLLINE& line : lines) edlWriteLine(file, &line);
    edlClose(file);
  }
  ~Events() { std::remove(path.c_str()); }
};

const Events& TheEvents() {
  static const Events events;
  return events;
}

void ImportFile(CTimeCodeSpace* space, const Events& events) {
  benchmark::DoNotOptimize(edlReadFile(space, events.path.c_str(), nullptr));
}

void AddLines(CTimeCodeSpace* space, const Events& events) {
  uint64_t tag = 0;
  for (const EDLLINE& line : events.lines) _tcsAddEdlLine(space, &line, ++tag);
}

// Each iteration fills a fresh space. One untimed fill first, so that both
// benchmarks find the heap's pages already mapped: the first touch of a
// gigabyte of clip records would otherwise dwarf what is measured.
void Fill(benchmark::State& state, void (*fill)(CTimeCodeSpace*, const Events&)) {
  const Events& events = TheEvents();
  CTimeCodeSpace* warm = tcsOpen(nullptr, nullptr, nullptr);
  fill(warm, events);
  tcsClose(warm);
  for (auto _ : state) {
    CTimeCodeSpace* space = tcsOpen(nullptr, nullptr, nullptr);
    fill(space, events);
    state.PauseTiming();
    tcsClose(space);
    state.ResumeTiming();
  }
  state.SetItemsProcessed(state.iterations() * kEvents);
}

void BM_ImportEdlFile(benchmark::State& state) { Fill(state, &ImportFile); }
void BM_AddParsedLines(benchmark::State& state) { Fill(state, &AddLines); }

void BM_WriteEdl(benchmark::State& state) {
  const Events& events = TheEvents();
  CTimeCodeSpace* space = tcsOpen(nullptr, nullptr, nullptr);
  edlReadFile(space, events.path.c_str(), nullptr);
  const std::string out = events.path + ".out";
  for (auto _ : state) benchmark::DoNotOptimize(tcsWriteEdl(space, out.c_str(), 0, nullptr));
  tcsClose(space);
  std::remove(out.c_str());
  state.SetItemsProcessed(state.iterations() * kEvents);
}

// The host kit's writer over the same space: listed, grouped, formatted and
// written to a file.
void BM_WriteSpaceEdl(benchmark::State& state) {
  const Events& events = TheEvents();
  CTimeCodeSpace* space = tcsOpen(nullptr, nullptr, nullptr);
  edlReadFile(space, events.path.c_str(), nullptr);
  const std::string out = events.path + ".space";
  std::string text;
  for (auto _ : state) {
    text.clear();
    tcs::host::AppendSpaceEdl(space, {"bench", {30, false}}, text);
    std::FILE* file = std::fopen(out.c_str(), "wb");
    std::fwrite(text.data(), 1, text.size(), file);
    std::fclose(file);
  }
  tcsClose(space);
  std::remove(out.c_str());
  state.SetItemsProcessed(state.iterations() * kEvents);
}

// The translator's share of an export: the same lines formatted and written.
void BM_WriteLines(benchmark::State& state) {
  const Events& events = TheEvents();
  const std::string out = events.path + ".lines";
  for (auto _ : state) {
    void* file = edlOpen(out.c_str(), EDL_ACCESS_WRITE, EDL_CREATE_ALWAYS, nullptr);
    for (const EDLLINE& line : events.lines) edlWriteLine(file, &line);
    edlClose(file);
  }
  std::remove(out.c_str());
  state.SetItemsProcessed(state.iterations() * kEvents);
}

// A list of mixed track fields, as multi-track editors write them: each
// event on V, A, AA, AA/V, B or A2 in turn (about 1.7 placed clips an event),
// cut back to back, each with a source-name note.
struct MixedList {
  std::string path;
  MixedList() : path("/tmp/tcs_edl_mixed_bench_" + std::to_string(getpid()) + ".edl") {
    static const char* const kTracks[] = {"V     ", "A     ", "AA    ", "AA/V  ", "B     ",
                                          "A2    "};
    std::string text = "TITLE: MIXED\nFCM: NON-DROP FRAME\n";
    char line[160];
    uint32_t record = 108000;
    for (int i = 0; i < kEvents; ++i) {
      const uint32_t length = 20 + uint32_t(i % 97);
      const uint32_t source = 90000 + uint32_t(i % 1000) * 300;
      const std::string src_in = Timecode(source), src_out = Timecode(source + length);
      const std::string rec_in = Timecode(record), rec_out = Timecode(record + length);
      std::snprintf(line, sizeof line, "%06d  R%05d   %s C        %s %s %s %s\n", i + 1,
                    i % 500, kTracks[i % 6], src_in.c_str(), src_out.c_str(), rec_in.c_str(),
                    rec_out.c_str());
      text += line;
      text += "* FROM CLIP NAME: Clip_" + std::to_string(i) + ".mov\n";
      record += length;
    }
    std::FILE* file = std::fopen(path.c_str(), "wb");
    std::fwrite(text.data(), 1, text.size(), file);
    std::fclose(file);
  }
  ~MixedList() { std::remove(path.c_str()); }
  std::string Text() const {
    std::string text;
    std::FILE* file = std::fopen(path.c_str(), "rb");
    char block[1 << 16];
    size_t n = 0;
    while (file != nullptr && (n = std::fread(block, 1, sizeof block, file)) > 0) text.append(block, n);
    if (file != nullptr) std::fclose(file);
    return text;
  }
  static std::string Timecode(uint32_t frame) {
    char text[16];
    std::snprintf(text, sizeof text, "%02u:%02u:%02u:%02u", frame / 108000, frame / 1800 % 60,
                  frame / 30 % 60, frame % 30);
    return text;
  }
};

long ResidentBytes() {
  long pages = 0, resident = 0;
  std::FILE* statm = std::fopen("/proc/self/statm", "r");
  if (statm == nullptr) return 0;
  if (std::fscanf(statm, "%ld %ld", &pages, &resident) != 2) resident = 0;
  std::fclose(statm);
  return resident * sysconf(_SC_PAGESIZE);
}

unsigned int PlacedClips(CTimeCodeSpace* space) {
  unsigned int placed = 0;
  for (unsigned int channel = 0; channel < 96; ++channel) {
    unsigned int count = 0;
    tcsGetClipCount(space, channel, &count);
    placed += count;
  }
  return placed;
}

// A read of path into a fresh space in a fresh process (this binary run
// again, see kColdChild): the resident bytes it adds per placed clip, and its
// time, the kernel's first touch of every page included.
struct ColdRead {
  double bytes_per_clip = 0;
  double seconds = 0;
};

ColdRead MeasureRead(const char* path) {
  ColdRead measured;
  const long before = ResidentBytes();
  const auto start = std::chrono::steady_clock::now();
  CTimeCodeSpace* space = tcsOpen(nullptr, nullptr, nullptr);
  edlReadFile(space, path, nullptr);
  measured.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  measured.bytes_per_clip = double(ResidentBytes() - before) / PlacedClips(space);
  tcsClose(space);
  return measured;
}

constexpr char kColdFlag[] = "--tcs-cold-read";

// Run as `tcs_bench --tcs-cold-read PATH`, the binary measures that read
// before anything else touches its heap, writes the result to its standard
// output and ends.
const bool kColdChild = [] {
  std::FILE* cmdline = std::fopen("/proc/self/cmdline", "rb");
  if (cmdline == nullptr) return false;
  char args[4096] = {};
  const size_t n = std::fread(args, 1, sizeof args - 1, cmdline);
  std::fclose(cmdline);
  const char* flag = args + strnlen(args, n) + 1;
  if (flag >= args + n || std::strcmp(flag, kColdFlag) != 0) return false;
  const ColdRead measured = MeasureRead(flag + sizeof kColdFlag);
  _exit(write(1, &measured, sizeof measured) == sizeof measured ? 0 : 1);
}();

ColdRead ReadCold(const std::string& path) {
  ColdRead cold;
  int out[2];
  if (pipe(out) != 0) return cold;
  const pid_t child = fork();
  if (child == 0) {
    dup2(out[1], 1);
    execl("/proc/self/exe", "tcs_bench", kColdFlag, path.c_str(), static_cast<char*>(nullptr));
    _exit(1);
  }
  close(out[1]);
  if (child < 0 || read(out[0], &cold, sizeof cold) != sizeof cold) cold = ColdRead{};
  close(out[0]);
  if (child > 0) waitpid(child, nullptr, 0);
  return cold;
}

// What the tool's info costs on a mixed-track list: the file read into a
// fresh space at 30 fps, after one untimed read (the heap's pages mapped);
// and once in a fresh process (ReadCold).
void BM_ImportMixedTracks(benchmark::State& state) {
  static const MixedList list;
  // First, with the heaps of earlier benchmarks given back: the two
  // processes share the machine's memory.
  malloc_trim(0);
  clsTrimRecordSlabs();
  const ColdRead cold = ReadCold(list.path);
  CTimeCodeSpace* first = tcsOpen(nullptr, nullptr, nullptr);
  edlReadFile(first, list.path.c_str(), nullptr);
  state.counters["placed_clips"] = PlacedClips(first);
  tcsClose(first);
  for (auto _ : state) {
    CTimeCodeSpace* space = tcsOpen(nullptr, nullptr, nullptr);
    benchmark::DoNotOptimize(edlReadFile(space, list.path.c_str(), nullptr));
    state.PauseTiming();
    tcsClose(space);
    state.ResumeTiming();
  }
  state.counters["cold_read_ms"] = cold.seconds * 1000;
  state.counters["resident_KiB_per_clip"] = cold.bytes_per_clip / 1024;
  state.SetItemsProcessed(state.iterations() * kEvents);
}

// The mixed list in memory read as the tool reads it, its rate found from
// its own text while it is parsed (arg 1), against the same read at a rate
// given (arg 0, the floor: each line parsed once either way); and the rate
// scan alone, the second parse of every line that finding the rate cost
// before the reader found it itself.
void BM_ReadMixedText(benchmark::State& state) {
  static const MixedList list;
  const std::string text = list.Text();
  EDLSETTINGS settings;
  edlInitSettings(&settings, 30, 0);
  settings.findRate = state.range(0) != 0 ? 1 : 0;
  for (auto _ : state) {
    CTimeCodeSpace* space = tcsOpen(nullptr, nullptr, nullptr);
    EDLREADRATE found{};
    benchmark::DoNotOptimize(edlReadTextRate(space, text.data(), text.size(), &settings,
                                             [](void*, const EDLWARNING*) {}, nullptr, &found));
    state.PauseTiming();
    if (found.framesPerSecond != 30) state.SkipWithError("the list was not read at 30 fps");
    tcsClose(space);
    state.ResumeTiming();
  }
  state.SetItemsProcessed(state.iterations() * kEvents);
}

void BM_ScanMixedRate(benchmark::State& state) {
  static const MixedList list;
  const std::string text = list.Text();
  for (auto _ : state) benchmark::DoNotOptimize(tcs::cmx3600::ScanRate(text));
  state.SetItemsProcessed(state.iterations() * kEvents);
}

BENCHMARK(BM_ImportEdlFile)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_ReadMixedText)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_ScanMixedRate)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_AddParsedLines)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_ImportMixedTracks)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_WriteEdl)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_WriteSpaceEdl)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_WriteLines)->Unit(benchmark::kMillisecond);

}  // namespace
