#!/usr/bin/env bash
# Measures which lines and branches of the library (base/, logging/, src/map_utils/) its tests run, and prints a table.
# Usage: coverage.sh
# Ends with 1 when a line, or more than 2 % of the branches that can be reached, stays without a test. What may stay is
# listed with its reason in tests/coverage/not_covered.txt. Line by line: build/coverage/html/index.html.
set -euo pipefail
cd "$(dirname "$0")/.."
[ $# -eq 0 ] || { echo "usage: coverage.sh" >&2; exit 2; }

scripts/install_packages.sh g++ gcovr cmake ninja-build libgtest-dev libgmock-dev nlohmann-json3-dev qemu-user
if [ -z "${VOREL_DATA_DIR:-}" ]; then
  echo "VOREL_DATA_DIR is not set: tests on real data will be skipped."
fi

build=build/coverage
cmake -S . -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release -DVOREL_COVERAGE=ON -DVOREL_BUILD_TOOLS=OFF \
  -DVOREL_INSTALL=OFF > /dev/null
cmake --build "$build" --parallel "${VOREL_JOBS:-$(nproc)}"
find "$build" -name '*.gcda' -delete

# The tests of the library's own behaviour: not those that build the project anew or only read it.
if ! ctest --test-dir "$build" --parallel "${VOREL_JOBS:-$(nproc)}" --output-on-failure \
  --exclude-regex '^(consumer|drop_in|layout|package.*|tool_.*|example_.*|distance_series|fuzz_coverage|every_call|.*doc.*)$' \
  > "$build/tests.log" 2>&1; then
  grep -E '^\[  FAILED|Failure$|\*\*\*' "$build/tests.log" >&2 || tail -n 20 "$build/tests.log" >&2
  echo "coverage: a test failed, see $build/tests.log" >&2
  exit 1
fi
# What machines without the widest vectors choose.
if [ "$(uname -m)" = x86_64 ] && command -v qemu-x86_64 > /dev/null; then
  qemu-x86_64 -cpu Nehalem "$build/tests/concurrency_test" --gtest_filter='*TheFirstCallsMayCoincide' --gtest_brief=1
else
  echo "Without qemu-x86_64: the choice for machines without AVX2 counts as not covered."
fi

gcovr --root . "$build" --filter 'base/' --filter 'logging/' --filter 'src/map_utils/' \
  --exclude-throw-branches --exclude-unreachable-branches --json "$build/coverage.json"
mkdir -p "$build/html"
gcovr --root . --add-tracefile "$build/coverage.json" --exclude-throw-branches --exclude-unreachable-branches \
  --html-details "$build/html/index.html" --html-title "Coverage of the library by its tests"
python3 tests/coverage/check.py "$build/coverage.json" tests/coverage/not_covered.txt
