#!/usr/bin/env bash
# Builds every library source with nothing but -std=c++17 -I. -Isrc, with several compilers and instruction sets, and
# compares the digests of all functions' results. Usage: run.sh BUILD_DIRECTORY [--full]
#   without --full  g++ -O2 with each width of vectors against clang++ -O0
#   --full          both compilers at -O0, -O2 and -O3 and for x86-64-v3, aarch64 under qemu-user, and the math library
#                   without its fused variants. Where that library enters, the last two may differ within the table of
#                   docs/testing.md.
set -euo pipefail
usage="usage: run.sh BUILD_DIRECTORY [--full]"
work=${1:?$usage}
full=false
case ${2:-} in
  "") ;;
  --full) full=true ;;
  *) echo "$usage" >&2; exit 2 ;;
esac
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
  echo "$sources" | xargs -P "${VOREL_JOBS:-$(nproc)}" -I{} "$compiler" -std=c++17 -I. -Isrc "$@" -c {} -o "$directory/{}.o"
  # The program that makes the inputs is no library source: it is told to leave products and sums apart.
  "$compiler" -std=c++17 -I. -Isrc -Itests "$@" -ffp-contract=off -c tests/drop_in/digest.cpp -o "$directory/digest.o"
  find "$directory" -name '*.o' -print0 | xargs -0 "$compiler" -std=c++17 -I. -Isrc -Itests "$@" -ffp-contract=off \
    tests/support/lines.cpp -pthread -o "$directory/digest"
}

# compare NAME: the digests of the run NAME against those of the first one.
compare() {
  if diff "$work/first.txt" "$work/$1.txt"; then
    echo "$1: same bits ($(grep -c . "$work/$1.txt") digests)"
  else
    echo "$1: differs from the first build (above)"
    failures=$((failures + 1))
  fi
}

# compare_within NAME COLUMN: the raw results of the run NAME against the first ones: what uses the math library may
# differ as much as the column of the table says.
compare_within() {
  echo "$1, value by value:"
  if ! tests/drop_in/compare_results.py "$work/first.raw" "$work/$1.raw" --within "$2"; then
    echo "$1: differs by more than docs/testing.md says (above)"
    failures=$((failures + 1))
  fi
  rm -f "$work/$1.raw"
}

# runs_here FLAG: whether the machine can run what the compiler makes with it.
runs_here() {
  echo 'int main(int argc, char**) { double x = argc; x = x * x + 1.5; return x == 2.5 ? 0 : 1; }' > "$work/probe.cpp"
  g++ -O2 "$1" -mfma "$work/probe.cpp" -o "$work/probe" 2> /dev/null && "$work/probe" 2> /dev/null
}

# each_width BUILD: every form of the loops over vectors that the machine has; the widest one runs anyway.
each_width() {
  for lanes in 1 2; do
    "$work/$1/digest" --lanes "$lanes" > "$work/$1-$lanes-at-a-time.txt"
    compare "$1-$lanes-at-a-time"
  done
}

build gcc-O2 g++ -O2
if $full; then
  "$work/gcc-O2/digest" --raw "$work/first.raw" > "$work/first.txt"
else
  "$work/gcc-O2/digest" > "$work/first.txt"
fi
echo "gcc-O2: $(grep -c . "$work/first.txt") digests"
tests/drop_in/check_coverage.py nm "$work/gcc-O2/digest.o" || failures=$((failures + 1))
each_width gcc-O2

build clang-O0 clang++ -O0
"$work/clang-O0/digest" > "$work/clang-O0.txt"
compare clang-O0

if $full; then
  for level in -O0 -O3; do
    build "gcc$level" g++ "$level"
    "$work/gcc$level/digest" > "$work/gcc$level.txt"
    compare "gcc$level"
  done
  for level in -O2 -O3; do
    build "clang$level" clang++ "$level"
    "$work/clang$level/digest" > "$work/clang$level.txt"
    compare "clang$level"
  done
  each_width clang-O2

  if runs_here -march=x86-64-v3; then
    build gcc-v3 g++ -O3 -march=x86-64-v3
    "$work/gcc-v3/digest" > "$work/gcc-v3.txt"
    compare gcc-v3
    build clang-v3 clang++ -O3 -march=x86-64-v3
    "$work/clang-v3/digest" > "$work/clang-v3.txt"
    compare clang-v3
  else
    echo "x86-64-v3: skipped, this machine cannot run it"
  fi

  # The GNU math library chooses variants with fused products where the machine has them, and can be told not to.
  GLIBC_TUNABLES=glibc.cpu.hwcaps=-FMA,-AVX2 "$work/gcc-O2/digest" --raw "$work/unfused-libm.raw" > "$work/unfused-libm.txt"
  if cmp -s "$work/first.txt" "$work/unfused-libm.txt"; then
    echo "unfused-libm: skipped, the math library of this machine has no other variants"
  else
    compare_within unfused-libm "Unfused variants"
  fi

  if command -v aarch64-linux-gnu-g++ > /dev/null && command -v qemu-aarch64 > /dev/null; then
    build aarch64 aarch64-linux-gnu-g++ -O2 -static
    qemu-aarch64 "$work/aarch64/digest" --raw "$work/aarch64.raw" > "$work/aarch64.txt"
    compare_within aarch64 aarch64
    qemu-aarch64 "$work/aarch64/digest" --lanes 1 --raw "$work/aarch64-1-at-a-time.raw" > "$work/aarch64-1-at-a-time.txt"
    compare_within aarch64-1-at-a-time aarch64
  else
    echo "aarch64: skipped, needs aarch64-linux-gnu-g++ and qemu-aarch64"
  fi
  rm -f "$work/first.raw"
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
