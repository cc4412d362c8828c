#!/usr/bin/env bash
# Builds the project and runs its tests. Usage: test.sh [--full]
#   --full   also: checked preconditions, clang++, the sanitizers
# Tests on real data run when VOREL_DATA_DIR names a folder that holds them.
set -euo pipefail
cd "$(dirname "$0")/.."

full=false
for argument in "$@"; do
  case $argument in
    --full) full=true ;;
    *) echo "usage: test.sh [--full]" >&2; exit 2 ;;
  esac
done

scripts/install_packages.sh g++ clang cmake ninja-build pkg-config libgtest-dev libgmock-dev libcli11-dev libsimdjson-dev \
  libpugixml-dev nlohmann-json3-dev libgeographiclib-dev librsvg2-bin g++-aarch64-linux-gnu qemu-user

if [ -z "${VOREL_DATA_DIR:-}" ]; then
  echo "VOREL_DATA_DIR is not set: tests on real data will be skipped."
fi

# build PRESET [cmake options]: configures and builds.
build() {
  local preset=$1
  shift
  echo "== $preset"
  cmake --preset "$preset" "$@" > /dev/null
  cmake --build --preset "$preset"
}

# check PRESET [ctest options]: runs the tests.
check() { ctest --preset "$@" --parallel "$(nproc)"; }

build release
check release
if $full; then
  # What builds the project by itself, or only reads it, is the same in every preset.
  once='^(consumer|drop_in|layout)$'
  build debug
  check debug --exclude-regex "$once"
  build asan-ubsan -DCMAKE_CXX_COMPILER=clang++
  check asan-ubsan --exclude-regex "$once"
  build tsan
  check tsan --exclude-regex "$once"
fi
