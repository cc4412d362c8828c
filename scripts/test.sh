#!/usr/bin/env bash
# Builds the project and runs its tests, stage by stage, up to the first that fails. Usage: test.sh [--full]
#   --full   also: every compiler and level for the same bits, checked preconditions and standard library, the sanitizers,
#            static analysis, 20 s of every fuzz target, a sample of the mutations
# Tests on real data run when VOREL_DATA_DIR names a folder that holds them. VOREL_JOBS jobs run at a time: as many as
# there are processors unless set.
set -euo pipefail
cd "$(dirname "$0")/.."

full=false
for argument in "$@"; do
  case $argument in
    --full) full=true ;;
    *) echo "usage: test.sh [--full]" >&2; exit 2 ;;
  esac
done
jobs=${VOREL_JOBS:-$(nproc)}
export VOREL_JOBS=$jobs

logs=build/test_logs
rm -rf "$logs"
mkdir -p "$logs"
passed=0

# processor_seconds: those of everything that has ended so far, in whole seconds.
processor_seconds() {
  times > "$logs/times"
  awk 'NR == 2 { for (i = 1; i <= 2; ++i) { split($i, part, /[ms]/); sum += part[1] * 60 + part[2] }; printf "%.0f", sum }' \
    "$logs/times"
}

# stage TITLE COMMAND...: runs a command under a heading; the whole script ends when it fails.
stage() {
  local title=$1 started=$SECONDS before now
  shift
  processor_seconds > "$logs/before"
  before=$(< "$logs/before")
  printf '\n== %s\n' "$title"
  "$@"
  processor_seconds > "$logs/now"
  now=$(< "$logs/now")
  printf '%-58s %5d s, %5d s of processor time\n' "$title" "$((SECONDS - started))" "$((now - before))" | tee -a "$logs/stages"
}
trap 'status=$?; [ $status -eq 0 ] || printf "\ntest.sh: FAILED, status %d, in the stage above\n" $status' EXIT

configure() { cmake --preset "$@" > "$logs/configure" || { cat "$logs/configure"; return 1; }; }
build() { cmake --build --preset "$@" --parallel "$jobs"; }

# check PRESET [ctest options]: runs the tests and counts them.
check() {
  ctest --preset "$@" --parallel "$jobs" | tee "$logs/ctest"
  passed=$((passed + $(sed -n 's/^100% tests passed, 0 tests failed out of \([0-9]*\)$/\1/p' "$logs/ctest")))
}

# counts COMMAND...: a check outside of ctest, which counts as one test.
counts() {
  "$@"
  passed=$((passed + 1))
}

build_tsan() {
  configure tsan
  build tsan --target "${threaded[@]/%/_test}"
}

packages=(g++ clang clang-format cmake ninja-build pkg-config python3 libgtest-dev libgmock-dev libcli11-dev libsimdjson-dev libpugixml-dev
  nlohmann-json3-dev libgeographiclib-dev librsvg2-bin)
if $full; then
  packages+=(googletest libclang-rt-dev g++-aarch64-linux-gnu qemu-user cppcheck clang-tidy python3-mpmath python3-sympy)
fi
stage "Packages" scripts/install_packages.sh "${packages[@]}"

if [ -z "${VOREL_DATA_DIR:-}" ]; then
  echo "VOREL_DATA_DIR is not set: tests on real data will be skipped."
fi

stage "Release: configure" configure release
stage "Release: build" build release
if $full; then
  stage "Release: tests" check release --exclude-regex '^drop_in$'
  stage "Same bits: compilers, levels, vectors, aarch64, math library" counts tests/drop_in/run.sh build/drop_in --full

  # What builds the project by itself, or only reads it, is the same in every preset and has the label "once".
  stage "Checked preconditions and containers: build" eval 'configure debug && build debug'
  stage "Checked preconditions and containers: tests" check debug --label-exclude '^once$'
  stage "Address and undefined behaviour: build" eval 'configure asan-ubsan -DCMAKE_CXX_COMPILER=clang++ && build asan-ubsan'
  stage "Address and undefined behaviour: tests" check asan-ubsan --label-exclude '^once$'

  # Threads meet in logging, and in the choice of the form of a kernel at its first call.
  threaded=()
  for subject in concurrency elapsed_timer log_sinks log_statement logging logging_under_fire; do
    [ ! -f "tests/${subject}_test.cpp" ] || threaded+=("$subject")
  done
  stage "Threads: build" build_tsan
  stage "Threads: tests" check tsan --tests-regex "^($(IFS='|'; echo "${threaded[*]}"))\$"

  stage "Static analysis" counts scripts/analyse.sh
  stage "Every fuzz target for 20 s" counts scripts/fuzz.sh 20
  [ ! -x tools/mutate.py ] || stage "A sample of the mutations" counts tools/mutate.py --sample 12 --jobs "$jobs"
  [ ! -x scripts/docs.sh ] || stage "Documentation" counts scripts/docs.sh
else
  stage "Release: tests" check release
fi

printf '\n== Stages\n'
cat "$logs/stages"
printf '\n100%% tests passed, 0 tests failed out of %d\n\nTotal Test time (real) = %d.00 sec\n' "$passed" "$SECONDS"
