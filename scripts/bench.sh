#!/usr/bin/env bash
# Measures the library: builds, runs every job with repetitions, prints one table of medians.
# Usage: bench.sh [--peers] [--quick] [--write-docs]
#   --peers       beside public peers: Boost.Geometry, GEOS, GeographicLib, S2, PROJ; turf and cheap-ruler in Node
#   --quick       a smoke run: two short repetitions, of which the figures say little
#   --write-docs  also renews the table of docs/performance.md and the chart docs/pictures/performance.svg
# The whole result is left in out/bench.json, the chart in out/performance.svg. Real lines take part where VOREL_DATA_DIR
# names a folder that holds them.
set -euo pipefail
cd "$(dirname "$0")/.."

peers=OFF
write_docs=()
repetitions=5
seconds=0.04
for argument in "$@"; do
  case $argument in
    --peers) peers=ON ;;
    --quick) repetitions=2 seconds=0.002 ;;
    --write-docs) write_docs=(--write-docs) ;;
    *) echo "usage: bench.sh [--peers] [--quick] [--write-docs]" >&2; exit 2 ;;
  esac
done

packages=(g++ cmake ninja-build pkg-config libbenchmark-dev libgtest-dev libgmock-dev nlohmann-json3-dev
  python3-matplotlib)
if [ $peers = ON ]; then
  packages+=(libboost-dev libgeos-dev libgeos++-dev libgeographiclib-dev libs2-dev libproj-dev)
  command -v node > /dev/null || packages+=(nodejs)
  command -v npm > /dev/null || packages+=(npm)
fi
scripts/install_packages.sh "${packages[@]}"

if [ -z "${VOREL_DATA_DIR:-}" ]; then
  echo "VOREL_DATA_DIR is not set: generated lines only." >&2
fi

build=build/bench
mkdir -p "$build" out
# Prints what a step has to say only when it fails.
quietly() {
  if ! "$@" > "$build/bench.log" 2>&1; then
    tail -n 30 "$build/bench.log" >&2
    echo "Failed: $*; the whole log is in $build/bench.log" >&2
    exit 1
  fi
}
echo "Building ..." >&2
quietly cmake -S . -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release -DVOREL_BUILD_TOOLS=OFF \
  -DVOREL_BUILD_BENCHMARKS=ON -DVOREL_BENCHMARK_PEERS=$peers
quietly cmake --build "$build" --target peers_bench
program=$build/benchmarks/peers/peers_bench

# Every candidate's repetitions are spread over the whole run in random order, so that a slow minute of the machine
# meets all of them.
echo "Measuring ..." >&2
rm -f "$build/native.json" "$build/node.json"
quietly "$program" --benchmark_enable_random_interleaving=true --benchmark_repetitions=$repetitions \
  --benchmark_min_time=$seconds --benchmark_out="$build/native.json" --benchmark_out_format=json

node_results=()
if [ $peers = ON ]; then
  mkdir -p "$build/node"
  cp benchmarks/peers/node/package.json benchmarks/peers/node/bench.js "$build/node/"
  quietly npm install --prefix "$build/node" --no-package-lock --no-audit --no-fund
  quietly "$program" --write-inputs="$build/inputs.json"
  quietly node "$build/node/bench.js" "$build/inputs.json" "$build/node.json" $repetitions $seconds
  node_results=("$build/node.json")
fi

python=/usr/bin/python3  # the one for which Debian packages install
[ -x $python ] || python=python3
"$python" tools/bench_table.py "$build/native.json" "${node_results[@]}" --build "$build" --out out "${write_docs[@]}"
