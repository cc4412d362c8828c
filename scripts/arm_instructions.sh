#!/usr/bin/env bash
# Counts the instructions that hot functions execute on 64-bit ARM, per vertex, and prints them as a table. Needs no ARM
# machine: the library is cross-compiled, and an emulator writes a line per instruction.
# Usage: arm_instructions.sh [--write-docs]
#   --write-docs  also renews the table of docs/performance.md
#
# Each job runs in a program that does it twice and in one that does it three times; all else in them is the same, so the
# difference is what one time executes, with buffers that have reached their size.
set -euo pipefail
shopt -s inherit_errexit
cd "$(dirname "$0")/.."

write_docs=false
case ${1:-} in
  '') ;;
  --write-docs) write_docs=true ;;
  *) echo "usage: arm_instructions.sh [--write-docs]" >&2; exit 2 ;;
esac
scripts/install_packages.sh g++-aarch64-linux-gnu qemu-user

compiler=aarch64-linux-gnu-g++
flags=(-std=c++17 -O3 -ffp-contract=off -fno-math-errno -I. -Isrc)
build=build/arm
mkdir -p "$build/objects"
echo "Building ..." >&2
rm -f "$build"/objects/*.o
for source in $(find base logging src/map_utils -name '*.cpp') benchmarks/arm/repeated_job.cpp; do
  echo "$source $build/objects/${source//\//-}.o"
done | xargs -P "$(nproc)" -n 2 sh -c "$compiler ${flags[*]} -c \"\$0\" -o \"\$1\""
$compiler "$build"/objects/*.o -static -pthread -o "$build/repeated_job"

# executed JOB TIMES [scalar]: the number of instructions of the whole program. One per line of the log, because the
# emulator translates them one by one.
executed() {
  qemu-aarch64 -singlestep -d exec,nochain "$build/repeated_job" "$@" 2>&1 > "$build/items" | grep -c '^Trace' ||
    { echo "Failed under the emulator: repeated_job $*" >&2; exit 1; }
}
# per_item JOB [scalar]: the instructions of one item.
per_item() {
  local twice thrice items
  twice=$(executed "$1" 2 "${@:2}")
  thrice=$(executed "$1" 3 "${@:2}")
  read -r items _ < "$build/items"
  awk -v executed=$((thrice - twice)) -v items="$items" \
    'BEGIN {value = executed / items; printf value < 10 ? "%.2f" : value < 100 ? "%.1f" : "%.0f", value}'
}

echo "Counting ..." >&2
table=$build/table.md
{
  echo "| job | per | instructions | with segments measured one at a time |"
  echo "|---|---|---:|---:|"
} | tee "$table"
qemu-aarch64 "$build/repeated_job" > "$build/jobs"
while read -r job <&3; do
  vectors=$(per_item "$job")
  scalar=$(per_item "$job" scalar)
  read -r _ unit < "$build/items"
  [ "$vectors" = "$scalar" ] && scalar="the same"
  echo "| ${job#* } | $unit | $vectors | $scalar |" | tee -a "$table"
done 3< "$build/jobs"
{
  echo
  echo "Counted with $($compiler --version | head -n 1), ${flags[*]:1:3}, static; $(qemu-aarch64 --version | head -n 1)."
} | tee -a "$table"

if $write_docs; then
  page=docs/performance.md
  begin='<!-- counted: begin -->' end='<!-- counted: end -->'
  if [ "$(grep -cxF -e "$begin" -e "$end" $page)" != 2 ]; then
    echo "$page: the markers '$begin' and '$end' must stand there once each, on lines of their own" >&2
    exit 1
  fi
  awk -v begin="$begin" -v end="$end" -v table="$table" '
    $0 == begin {print; while ((getline line < table) > 0) print line; inside = 1}
    $0 == end {inside = 0}
    !inside && $0 != begin {print}' $page > "$build/page.md"
  cp "$build/page.md" $page
  echo "Renewed: $page" >&2
fi
