#!/usr/bin/env bash
# Builds every libFuzzer harness (fuzz/fuzz_*.cc, with AddressSanitizer and
# UndefinedBehaviorSanitizer) and runs each for SECONDS, printing libFuzzer's
# final statistics. Exits non-zero on the first finding; the input that found
# it is left in build-fuzz/findings/.
#
#   fuzz/run.sh SECONDS [--jobs N] [HARNESS...]
#   e.g. fuzz/run.sh 60 fuzz_setmode;  fuzz/run.sh 3600 --jobs all
#
# --jobs N runs N fuzzing processes per harness at once, each for SECONDS,
# sharing one corpus (libFuzzer's -jobs and -workers); "all" is one per
# core. The harnesses still run one after the other. Each process logs to
# build-fuzz/<harness>.logs/fuzz-K.log; the totals are printed.
#
# Every harness starts from its checked-in seeds (fuzz/corpus/<harness>) and
# from what earlier runs here found (build-fuzz/corpus/<harness>, not checked
# in). FUZZ_JOBS sets the compile parallelism (default 2), FUZZ_OUT the
# build directory (default build-fuzz), FUZZ_SANITIZERS the sanitizers
# (default address,undefined), FUZZ_RUNS a number of executions after
# which each process stops (sooner than SECONDS). A long campaign may run with "undefined"
# alone, about three times faster, and then replay what it found with
# AddressSanitizer: build-fuzz/<harness> -runs=0 DIR.
#
# Each harness has a longest input (max_len below): past it an input only
# says more of what a shorter one says (more events, more calls), at a cost
# that grows faster than its length, as the checks after each call read the
# whole space.
set -euo pipefail
cd "$(dirname "$0")/.."
root=$PWD
usage="usage: fuzz/run.sh SECONDS [--jobs N] [HARNESS...]"
seconds=${1:?$usage}
shift
# libFuzzer reads a time of 0 as no limit.
case "$seconds" in '' | *[!0-9]* | 0) echo "$usage" >&2; exit 2 ;; esac
workers=1
if [ "${1:-}" = "--jobs" ]; then
  workers=${2:?$usage}
  shift 2
  [ "$workers" = all ] && workers=$(nproc 2>/dev/null || echo 2)
  case "$workers" in
    '' | *[!0-9]* | 0) echo "$usage" >&2; exit 2 ;;
  esac
fi
cxx=${CXX_FUZZ:-$(command -v clang++-14 || command -v clang++)}
out=${FUZZ_OUT:-build-fuzz}
case "$out" in /*) ;; *) out=$root/$out ;; esac
sanitize="-fsanitize=${FUZZ_SANITIZERS:-address,undefined} -fno-sanitize-recover=all -fno-omit-frame-pointer"
cxxflags="-std=c++20 -O1 -g -Wall -Wextra -Werror -fPIC -Isrc -I. $sanitize"
mkdir -p "$out/obj" "$out/findings"

# Recompiles an object when it is missing or older than anything it includes.
stale() {  # object, dependency file
  [ -f "$1" ] && [ -f "$2" ] || return 0
  local dep
  for dep in $(sed -e 's/^[^:]*://' -e 's/\\$//' "$2"); do
    [ "$dep" -nt "$1" ] && return 0
  done
  return 1
}
compile() {  # source, object, extra flags...
  local source=$1 object=$2; shift 2
  if stale "$object" "${object%.o}.d" || [ "$root/fuzz/coverage-ignore.txt" -nt "$object" ]; then
    echo "compile $source"
    "$cxx" $cxxflags "$@" -MMD -c "$source" -o "$object"
  fi
}
export -f stale compile
# The checks that the library and the harnesses run are left out of the
# coverage that guides the fuzzing (fuzz/coverage-ignore.txt).
coverage="-fsanitize=fuzzer-no-link -fsanitize-coverage-ignorelist=$root/fuzz/coverage-ignore.txt"
export cxx cxxflags root coverage

shopt -s nullglob
for source in src/{record,platform,cmx3600,timecode,lookup,space,command,edl,backup,otio,hostkit}/*.cc; do
  echo "$source $out/obj/$(echo "${source#src/}" | tr / _ | sed 's/\.cc$/.o/')"
done | xargs -P "${FUZZ_JOBS:-2}" -n 2 bash -c 'compile "$0" "$1" $coverage'
# An archive, so that each harness links only the objects it calls: libFuzzer
# reads every coverage counter linked in after each run.
rm -f "$out/libtcs_fuzz.a"
ar rcs "$out/libtcs_fuzz.a" "$out"/obj/*.o

harnesses=("$@")
if [ ${#harnesses[@]} -eq 0 ]; then
  for source in fuzz/fuzz_*.cc; do harnesses+=("$(basename "$source" .cc)"); done
fi
for harness in "${harnesses[@]}"; do
  compile "fuzz/$harness.cc" "$out/$harness.o" $coverage
  "$cxx" $sanitize -fsanitize=fuzzer "$out/$harness.o" "$out/libtcs_fuzz.a" -o "$out/$harness"
done

# The harnesses write their scratch files to $TMPDIR: memory when there is some.
if [ -z "${TMPDIR:-}" ] && [ -d /dev/shm ] && [ -w /dev/shm ]; then export TMPDIR=/dev/shm; fi
# AddressSanitizer's bookkeeping, lightened for fuzzing (about a fifth of
# the executions): allocation stacks of two frames, a smaller quarantine, new
# blocks left unfilled. A finding's input replays with the defaults. The
# caller's ASAN_OPTIONS come last, so win.
export ASAN_OPTIONS="malloc_context_size=2:quarantine_size_mb=32:max_malloc_fill_size=0${ASAN_OPTIONS:+:$ASAN_OPTIONS}"

max_len() {
  case "$1" in
    fuzz_edl_line) echo 1024 ;;    # a line handed in takes 188 bytes and more
    fuzz_edl_reader) echo 1024 ;;  # a dozen events
    fuzz_setmode) echo 1024 ;;     # up to 32 calls
    *) echo 4096 ;;
  esac
}
for harness in "${harnesses[@]}"; do
  mkdir -p "$out/corpus/$harness"
  echo "== $harness: $seconds s"
  status=0
  flags=(-max_total_time="$seconds" -runs="${FUZZ_RUNS:--1}" -max_len="$(max_len "$harness")"
         -timeout=25 -print_final_stats=1 -dict="$root/fuzz/tcs.dict"
         -artifact_prefix="$out/findings/$harness-")
  if [ "$workers" -eq 1 ]; then
    "$out/$harness" "${flags[@]}" "$out/corpus/$harness" "fuzz/corpus/$harness" \
      2>"$out/$harness.log" || status=$?
  else
    # Each process writes fuzz-K.log into the current directory.
    rm -rf "$out/$harness.logs"
    mkdir -p "$out/$harness.logs"
    # libFuzzer copies each process's log into its own output as it ends.
    (cd "$out/$harness.logs" && "$out/$harness" -jobs="$workers" -workers="$workers" \
       "${flags[@]}" "$out/corpus/$harness" "$root/fuzz/corpus/$harness") \
      >"$out/$harness.log" 2>&1 || status=$?
  fi
  grep -E '^(stat::|Done|INFO: Running with|==[0-9]+==ERROR|SUMMARY)' "$out/$harness.log" || true
  if [ "$workers" -gt 1 ]; then
    awk '/^stat::number_of_executed_units/ {n += $2} /^stat::average_exec_per_sec/ {r += $2}
         END {print "total over '"$workers"' processes: " n " executions, " r " a second"}' \
      "$out/$harness.log"
  fi
  if [ "$status" -ne 0 ]; then
    echo "FINDING in $harness (exit $status): see $out/$harness.log and $out/findings/"
    tail -n 60 "$out/$harness.log"
    exit 1
  fi
done
echo "no findings"
