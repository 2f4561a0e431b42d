#!/usr/bin/env bash
# Builds every libFuzzer harness (fuzz/fuzz_*.cc, with AddressSanitizer and
# UndefinedBehaviorSanitizer) and runs each for SECONDS, printing libFuzzer's
# final statistics. Exits non-zero on the first finding; the input that found
# it is left in build-fuzz/findings/.
#
#   fuzz/run.sh SECONDS [HARNESS...]    e.g. fuzz/run.sh 60 fuzz_setmode
#
# Every harness starts from its checked-in seeds (fuzz/corpus/<harness>) and
# from what earlier runs here found (build-fuzz/corpus/<harness>, not checked
# in). FUZZ_JOBS sets the compile parallelism (default 2), FUZZ_OUT the
# build directory (default build-fuzz).
set -euo pipefail
cd "$(dirname "$0")/.."
seconds=${1:?usage: fuzz/run.sh SECONDS [HARNESS...]}
shift
cxx=${CXX_FUZZ:-$(command -v clang++-14 || command -v clang++)}
out=${FUZZ_OUT:-build-fuzz}
sanitize="-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer"
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
  if stale "$object" "${object%.o}.d"; then
    echo "compile $source"
    "$cxx" $cxxflags "$@" -MMD -c "$source" -o "$object"
  fi
}
export -f stale compile
export cxx cxxflags

shopt -s nullglob
for source in src/{record,platform,cmx3600,timecode,lookup,space,command,edl,backup,hostkit}/*.cc; do
  echo "$source $out/obj/$(echo "${source#src/}" | tr / _ | sed 's/\.cc$/.o/')"
done | xargs -P "${FUZZ_JOBS:-2}" -n 2 bash -c 'compile "$0" "$1" -fsanitize=fuzzer-no-link'
objects=$(ls "$out"/obj/*.o)

harnesses=("$@")
if [ ${#harnesses[@]} -eq 0 ]; then
  for source in fuzz/fuzz_*.cc; do harnesses+=("$(basename "$source" .cc)"); done
fi
for harness in "${harnesses[@]}"; do
  compile "fuzz/$harness.cc" "$out/$harness.o" -fsanitize=fuzzer-no-link
  "$cxx" $sanitize -fsanitize=fuzzer "$out/$harness.o" $objects -o "$out/$harness"
done

# The harnesses write their scratch files to $TMPDIR: memory when there is some.
if [ -z "${TMPDIR:-}" ] && [ -d /dev/shm ] && [ -w /dev/shm ]; then export TMPDIR=/dev/shm; fi
for harness in "${harnesses[@]}"; do
  mkdir -p "$out/corpus/$harness"
  echo "== $harness: $seconds s"
  status=0
  "$out/$harness" -max_total_time="$seconds" -timeout=25 -print_final_stats=1 \
    -dict=fuzz/tcs.dict -artifact_prefix="$out/findings/$harness-" \
    "$out/corpus/$harness" "fuzz/corpus/$harness" 2>"$out/$harness.log" || status=$?
  grep -E '^(stat::|Done|INFO: Running with|==[0-9]+==ERROR|SUMMARY)' "$out/$harness.log" || true
  if [ "$status" -ne 0 ]; then
    echo "FINDING in $harness (exit $status): see $out/$harness.log and $out/findings/"
    tail -n 60 "$out/$harness.log"
    exit 1
  fi
done
echo "no findings"
