#!/usr/bin/env bash
# Builds the benchmarks, runs them with repetitions and prints each ratio to
# its floor (medians of CPU time, all from the same run of the same binary).
#
#   bench/compare.sh [repetitions] [extra benchmark flags...]
#
# BUILD_DIR (default build-bench) is configured with -DTCS_BUILD_BENCH=ON.
set -euo pipefail
here="$(cd "$(dirname "$0")" && pwd)"
root="$(dirname "$here")"
build="${BUILD_DIR:-$root/build-bench}"
reps="${1:-5}"
shift || true

cmake -S "$root" -B "$build" -DCMAKE_BUILD_TYPE=RelWithDebInfo -DTCS_BUILD_BENCH=ON \
  -DTCS_BUILD_TESTS=OFF >/dev/null
cmake --build "$build" -j2 --target tcs_bench >/dev/null

json="$(mktemp)"
trap 'rm -f "$json"' EXIT
# Repetitions of every benchmark run interleaved in random order, so a change
# in the machine's load during the run falls on a floor and its measured alike.
nice -n 0 "$build/tcs_bench" --benchmark_repetitions="$reps" \
  --benchmark_enable_random_interleaving=true \
  --benchmark_report_aggregates_only=true --benchmark_format=json "$@" >"$json"

python3 - "$json" <<'PY'
import json, sys

runs = json.load(open(sys.argv[1]))
median = {}
counters = {}
for b in runs["benchmarks"]:
    if b.get("aggregate_name") != "median":
        continue
    name = b["run_name"]
    median[name] = b["cpu_time"] * {"ns": 1, "us": 1e3, "ms": 1e6}[b["time_unit"]]
    counters[name] = b

def ratio(label, run, floor, target):
    if run not in median or floor not in median:
        return
    r = median[run] / median[floor]
    mark = "ok" if r <= target else "OVER"
    print(f"{label:<34} {median[run]/1e3:>12.2f} us {median[floor]/1e3:>12.2f} us "
          f"{r:>7.2f}x  (target {target}x) {mark}")

print(f"{'':<34} {'measured':>15} {'floor':>15} {'ratio':>8}")
for n in (1000, 10000, 100000):
    ratio(f"tcsTranslate {n}", f"BM_Translate/{n}", f"BM_FloorPointQuery/{n}", 1.5)
    ratio(f"tcsFindClip {n}", f"BM_FindClip/{n}", f"BM_FloorPointQuery/{n}", 1.5)
for n in (1000, 10000, 100000):
    ratio(f"ripple insert at head {n}", f"BM_RippleInsertAtHead/{n}", f"BM_FloorShiftWalk/{n}", 1.5)
    ratio(f"ripple delete at head {n}", f"BM_RippleDeleteAtHead/{n}", f"BM_FloorShiftWalk/{n}", 1.5)
for n in (1000, 10000, 100000):
    ratio(f"append {n} clips", f"BM_AppendClips/{n}", f"BM_FloorSetBuild/{n}", 2.0)
for name, b in counters.items():
    if name.startswith("BM_MemoryPerClip"):
        print(f"memory per placed clip (100k)      {b['placed_bytes']:>9.0f} B  record "
              f"{b['record_bytes']:>6.0f} B {b['ratio']:>7.2f}x  (target 1.25x)")
ratio("list 100k clips (tcsGetClips)", "BM_ListClips/100000", "BM_FloorListVector/100000", 1.5)
for run, label in (("BM_WalkPlayoutDay", "24-hour walk (20,160 events)"),
                   ("BM_WalkStaggeredDay", "staggered day walk (20,160 events)")):
    if run in median:
        print(f"{label:<34} {median[run] / 1e6:>9.1f} ms  (target < 50 ms)")
if "BM_WriteEdl" in counters:
    print(f"tcsWriteEdl, 100k events            {counters['BM_WriteEdl']['items_per_second']:>9,.0f} lines/s"
          "  (target >= 500,000)")
if "BM_WriteSpaceEdl" in counters:
    print(f"host kit writer, 100k events        {counters['BM_WriteSpaceEdl']['items_per_second']:>9,.0f} lines/s"
          "  (every clip of every channel)")
ratio("edlReadFile vs the parsed adds", "BM_ImportEdlFile/iterations:3",
      "BM_AddParsedLines/iterations:3", 1.5)
# Finding the rate keeps the parsed lines until the read (some 20 MB here).
ratio("mixed list, rate found vs given", "BM_ReadMixedText/1/iterations:3",
      "BM_ReadMixedText/0/iterations:3", 1.15)
if "BM_ScanMixedRate" in median and "BM_ReadMixedText/0/iterations:3" in median:
    print(f"the rate scan alone (a second parse)  {median['BM_ScanMixedRate'] / 1e6:>7.1f} ms"
          f"  ({median['BM_ScanMixedRate'] / median['BM_ReadMixedText/0/iterations:3']:.2f}x of the read)")
PY
