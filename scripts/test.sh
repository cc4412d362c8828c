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

# configure PRESET [cmake options]
configure() {
  echo "== $1"
  cmake --preset "$@" > /dev/null
}

build() { cmake --build --preset "$@"; }

# check PRESET [ctest options]: runs the tests.
check() { ctest --preset "$@" --parallel "$(nproc)"; }

configure release
build release
check release
if $full; then
  # What builds the project by itself, or only reads it, is the same in every preset.
  once='^(consumer|drop_in|layout)$'
  configure debug
  build debug
  check debug --exclude-regex "$once"
  configure asan-ubsan -DCMAKE_CXX_COMPILER=clang++
  build asan-ubsan
  check asan-ubsan --exclude-regex "$once"
  # Threads meet in the logging facility and nowhere else.
  configure tsan
  build tsan --target elapsed_timer_test log_sinks_test log_statement_test logging_test
  check tsan --tests-regex '^(elapsed_timer|log_sinks|log_statement|logging)$'
fi
