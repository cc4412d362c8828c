#!/usr/bin/env bash
# Builds the fuzz targets with clang's libFuzzer and sanitizers and runs them, each from its corpus in tests/fuzz/corpus.
# Usage: fuzz.sh [SECONDS_PER_TARGET] [TARGET...]
#   SECONDS_PER_TARGET   60 unless given
#   TARGET               a subject, such as projection; all of them unless given
# VOREL_JOBS targets are built and run at a time: as many as there are processors unless set.
# New inputs gather in build/fuzz/corpus/TARGET, crashing ones in build/fuzz/artifacts. Ends with 1 when a target fails.
set -euo pipefail
cd "$(dirname "$0")/.."

usage() { echo "usage: fuzz.sh [SECONDS_PER_TARGET] [TARGET...]" >&2; exit 2; }

seconds=60
if [[ ${1:-} =~ ^[0-9]+$ ]]; then
  [ "$1" -gt 0 ] || usage
  seconds=$1
  shift
elif [[ ${1:-} == -* ]]; then
  usage
fi
mapfile -t known < <(find tests/fuzz -name '*_fuzz.cpp' -exec basename {} _fuzz.cpp \; | sort)
targets=("$@")
[ ${#targets[@]} -gt 0 ] || targets=("${known[@]}")
for target in "${targets[@]}"; do
  [ -f "tests/fuzz/${target}_fuzz.cpp" ] || { echo "fuzz.sh: no target $target; there are: ${known[*]}" >&2; exit 2; }
done

compiler=${CXX:-}
if [ -z "$compiler" ]; then
  for candidate in clang++-14 clang++; do
    if command -v "$candidate" > /dev/null; then compiler=$candidate; break; fi
  done
fi
if [ -z "$compiler" ]; then
  scripts/install_packages.sh clang libclang-rt-dev
  compiler=clang++
fi

jobs=${VOREL_JOBS:-$(nproc)}
build=build/fuzz
sanitizers=-fsanitize=fuzzer-no-link,address,undefined,float-cast-overflow,signed-integer-overflow
cmake -S . -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DCMAKE_CXX_COMPILER="$compiler" \
  -DCMAKE_CXX_FLAGS="$sanitizers -fno-sanitize-recover=all -fno-omit-frame-pointer" \
  -DVOREL_FUZZERS=ON -DVOREL_CHECK_PRECONDITIONS=ON -DVOREL_BUILD_TOOLS=OFF > /dev/null
cmake --build "$build" --parallel "$jobs" --target "${targets[@]/%/_fuzz}"

# fuzz TARGET: runs one target, prints its figures and ends as it does.
fuzz() {
  local target=$1 log=$build/$1.log
  figure() { sed -n "s/^stat::$1: *//p" "$log"; }
  mkdir -p "$build/corpus/$target"
  if "$build/tests/fuzz/${target}_fuzz" -max_total_time="$seconds" -max_len=512 -timeout=20 -rss_limit_mb=3000 \
    -print_final_stats=1 -artifact_prefix="$build/artifacts/$target-" "$build/corpus/$target" \
    "tests/fuzz/corpus/$target" > "$log" 2>&1; then
    echo "$target: $(figure number_of_executed_units) executions, $(figure average_exec_per_sec) per second," \
      "slowest unit $(figure slowest_unit_time_sec) s"
  else
    echo "$target: FAILED after $(figure number_of_executed_units) executions, see $log:"
    grep -m 4 -E '_fuzz\.cpp:[0-9]+:|runtime error|ERROR:|precondition broken|Test unit written' "$log" || tail -n 5 "$log"
    return 1
  fi
}
mkdir -p "$build/artifacts"
rm -f "$build/failed"
export build seconds
export -f fuzz
if ! printf '%s\n' "${targets[@]}" |
    xargs -P "$jobs" -I{} bash -c 'fuzz "$1" || { echo "$1" >> "$build/failed"; exit 1; }' fuzz {}; then
  echo "failed: $(sort "$build/failed" | tr '\n' ' ')" >&2
  exit 1
fi
echo "${#targets[@]} targets passed."
