#!/usr/bin/env bash
# Checks what holds the project's layout together: rooms include downwards only, every library source pins its
# arithmetic first, subjects have a test and a benchmark, quoted examples are the compiled ones, sources are formatted.
set -uo pipefail
cd "$(dirname "$0")/../.."
failures=0
fail() { echo "$*"; failures=$((failures + 1)); }

# includes FOLDER: the project headers that the files of a room include.
includes() { grep -rhoE '^#include "[^"]+"' "$1" --include='*.h' --include='*.cpp' | cut -d'"' -f2 | sort -u; }

for header in $(includes base | grep -vE '^base/'); do fail "base includes $header"; done
for header in $(includes logging | grep -vE '^(base|logging)/'); do fail "logging includes $header"; done
for header in $(includes src/map_utils | grep -vE '^(base|logging|map_utils)/'); do fail "map_utils includes $header"; done
for header in $(includes tools/vorel | grep -E 'map_utils/internal|base/geodesy|base/precondition|base/strict'); do
  fail "the tool includes the internal header $header"
done

for source in $(find base logging src -name '*.cpp'); do
  first=$(grep -m 1 '^#include' "$source")
  [ "$first" = '#include "base/strict_floating_point.h"' ] || fail "$source does not pin its arithmetic first"
done
# A client that includes a header must not inherit the pragma.
for header in $(find base logging src -name '*.h'); do
  grep -q '#include "base/strict_floating_point.h"' "$header" && fail "$header includes base/strict_floating_point.h"
done

for source in src/map_utils/vorel_geometry_algorithm_*.cpp; do
  subject=${source#src/map_utils/vorel_geometry_algorithm_}
  subject=${subject%.cpp}
  [ -f "tests/${subject}_test.cpp" ] || fail "$subject has no test file"
  [ -f "benchmarks/${subject}_bench.cpp" ] || fail "$subject has no benchmark file"
  [ -f "tests/reference/${subject}_reference.cpp" ] || fail "$subject has no reference"
done

for file in $(find base logging src -name '*.h' -o -name '*.cpp' | xargs wc -l | awk '$1 > 550 && $2 != "total" {print $2}'); do
  # The class header is one table of contracts and stays whole.
  [ "$file" = src/map_utils/vorel_geometry_algorithm.h ] || fail "$file is too long: split it by subject"
done

# The example in the README is the file that the tests compile.
if ! awk '/^```cpp$/ {inside = 1; next} /^```$/ {inside = 0} inside' README.md | diff - examples/first_steps.cpp; then
  fail "README.md does not quote examples/first_steps.cpp"
fi

# sources PATTERN...: the project's files, also where there is no git to ask.
sources() {
  local names=(-false)
  for pattern in "$@"; do names+=(-o -name "$pattern"); done
  find . \( -path ./build -o -path ./out -o -path ./.git \) -prune -o \( "${names[@]}" \) -type f -print | sed 's|^\./||'
}

if command -v clang-format > /dev/null; then
  unformatted=$(sources '*.h' '*.cpp' | xargs clang-format --dry-run -Werror 2>&1 | grep -oE '^[^:]+\.(h|cpp)' | sort -u)
  for file in $unformatted; do fail "$file is not formatted"; done
else
  echo "format: skipped, needs clang-format"
fi

for script in $(sources '*.sh') .ci/run; do
  bash -n "$script" || fail "$script does not parse"
  [ -x "$script" ] || fail "$script is not executable"
done

[ "$failures" -eq 0 ] && echo "layout: in order"
exit "$((failures > 0))"
