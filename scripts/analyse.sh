#!/usr/bin/env bash
# Static analysis: cppcheck over the library and the tool, clang-tidy over the library (checks: .clang-tidy). Ends with 1
# at the first analyser that finds something. Usage: analyse.sh [--tool]
#   --tool   clang-tidy over the tool as well, which takes several times as long for the headers of CLI11
# VOREL_JOBS files are analysed at a time: as many as there are processors unless set.
set -euo pipefail
cd "$(dirname "$0")/.."

rooms=(base logging src/map_utils)
case ${1:-} in
  "") ;;
  --tool) rooms+=(tools/vorel) ;;
  *) echo "usage: analyse.sh [--tool]" >&2; exit 2 ;;
esac
jobs=${VOREL_JOBS:-$(nproc)}
scripts/install_packages.sh cppcheck clang-tidy

cppcheck --enable=warning,style,performance,portability --std=c++17 --language=c++ -I. -Isrc -j "$jobs" --quiet \
  --suppressions-list=scripts/cppcheck_suppressions.txt --error-exitcode=1 \
  --template='{file}:{line}: {severity}: {message} [{id}]' base logging src/map_utils tools/vorel
echo "cppcheck: no findings"

mapfile -t sources < <(find "${rooms[@]}" -name '*.cpp' | sort)
log=$(mktemp)
trap 'rm -f "$log"' EXIT
if ! printf '%s\n' "${sources[@]}" |
    xargs -P "$jobs" -I{} sh -c 'clang-tidy --quiet "$1" -- -std=c++17 -I. -Isrc 2>&1' clang-tidy {} > "$log"; then
  grep -vE '^[0-9]+ warnings? .*(generated|treated as errors?)\.?$' "$log" >&2
  echo "clang-tidy: findings above" >&2
  exit 1
fi
echo "clang-tidy: no findings in ${#sources[@]} sources"
