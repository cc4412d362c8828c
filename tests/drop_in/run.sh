#!/usr/bin/env bash
# Builds every library source with nothing but -std=c++17 -I. -Isrc, with each compiler and instruction set at hand, and
# compares the digests of all functions' results: all lines between builds for this machine, the "exact" ones with the
# build for another. Usage: run.sh BUILD_DIRECTORY
set -euo pipefail
work=${1:?usage: run.sh BUILD_DIRECTORY}
mkdir -p "$work"
work=$(cd "$work" && pwd)
cd "$(dirname "$0")/../.."

sources=$(find base logging src/map_utils -name '*.cpp' | sort)
failures=0

# build NAME COMPILER [FLAGS...] leaves the program $work/NAME/digest.
build() {
  local directory=$work/$1 compiler=$2
  shift 2
  rm -rf "$directory"
  find base logging src/map_utils -type d | while read -r room; do mkdir -p "$directory/$room"; done
  echo "$sources" | xargs -P "$(nproc)" -I{} "$compiler" -std=c++17 -I. -Isrc "$@" -c {} -o "$directory/{}.o"
  # The program that makes the inputs is no library source: it is told to leave products and sums apart.
  find "$directory" -name '*.o' -print0 | xargs -0 "$compiler" -std=c++17 -I. -Isrc -Itests "$@" -ffp-contract=off \
    tests/drop_in/digest.cpp tests/support/lines.cpp -pthread -o "$directory/digest"
}

# compare NAME FILTER: the digests of the build NAME against the first build, lines that match FILTER.
compare() {
  if diff <(grep "$2" "$work/first.txt") <(grep "$2" "$work/$1.txt"); then
    echo "$1: same bits ($(grep -c "$2" "$work/$1.txt") digests)"
  else
    echo "$1: differs from the first build (above)"
    failures=$((failures + 1))
  fi
}

# runs_here FLAG: whether the machine can run what the compiler makes with it.
runs_here() {
  echo 'int main(int argc, char**) { double x = argc; x = x * x + 1.5; return x == 2.5 ? 0 : 1; }' > "$work/probe.cpp"
  g++ -O2 "$1" -mfma "$work/probe.cpp" -o "$work/probe" 2> /dev/null && "$work/probe" 2> /dev/null
}

build gcc g++ -O2
"$work/gcc/digest" > "$work/first.txt"
echo "g++ -O2: $(grep -c . "$work/first.txt") digests"

build gcc-O0 g++
"$work/gcc-O0/digest" > "$work/gcc-O0.txt"
compare gcc-O0 .

build clang clang++ -O2
"$work/clang/digest" > "$work/clang.txt"
compare clang .

if runs_here -march=x86-64-v3; then
  build gcc-v3 g++ -O3 -march=x86-64-v3
  "$work/gcc-v3/digest" > "$work/gcc-v3.txt"
  compare gcc-v3 .
  build clang-v3 clang++ -O3 -march=x86-64-v3
  "$work/clang-v3/digest" > "$work/clang-v3.txt"
  compare clang-v3 .
else
  echo "x86-64-v3: skipped, this machine cannot run it"
fi

if command -v aarch64-linux-gnu-g++ > /dev/null && command -v qemu-aarch64 > /dev/null; then
  build aarch64 aarch64-linux-gnu-g++ -O2 -static
  qemu-aarch64 "$work/aarch64/digest" > "$work/aarch64.txt"
  compare aarch64 ^exact
else
  echo "aarch64: skipped, needs aarch64-linux-gnu-g++ and qemu-aarch64"
fi

# Relaxed arithmetic is refused with a message of its own. (That every source includes the header which does so is
# checked by tests/layout/run.sh.)
for compiler in g++ clang++; do
  for flag in -ffast-math -Ofast -ffinite-math-only; do
    message=$("$compiler" -std=c++17 -I. "$flag" -fsyntax-only -x c++ base/strict_floating_point.h 2>&1) && message=accepted
    case $message in
      *"needs exact IEEE arithmetic"*) ;;
      *) echo "$compiler $flag: not refused"; failures=$((failures + 1)) ;;
    esac
  done
done

exit "$((failures > 0))"
