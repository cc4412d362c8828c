#!/usr/bin/env bash
# Measures the library: builds, runs every job with repetitions, prints one table of medians and the targets met and
# missed.
# Usage: bench.sh [--peers] [--quick] [--runs N] [--write-docs]
#   --peers       beside public peers: Boost.Geometry, GEOS, GeographicLib, S2, PROJ; turf and cheap-ruler in Node
#   --quick       a smoke run: two short repetitions, of which the figures say little
#   --runs N      measures everything N times, one run after the other, and shows each
#   --write-docs  also renews the table of docs/performance.md and the chart docs/pictures/performance.svg
# The whole result is left in out/bench.json, the chart in out/performance.svg. Real lines take part where VOREL_DATA_DIR
# names a folder that holds them.
set -euo pipefail
cd "$(dirname "$0")/.."

usage() { echo "usage: bench.sh [--peers] [--quick] [--runs N] [--write-docs]" >&2; exit 2; }
peers=OFF
write_docs=()
runs=1
repetitions=21 seconds=0.01
node_repetitions=5 node_seconds=0.02
while [ $# -gt 0 ]; do
  case $1 in
    --peers) peers=ON ;;
    --quick) repetitions=2 seconds=0.001 node_repetitions=2 node_seconds=0.002 ;;
    --runs) shift; runs=${1:-}; [[ $runs =~ ^[1-9]$ ]] || { echo "bench.sh: --runs needs a number from 1 to 9" >&2; usage; } ;;
    --write-docs) write_docs=(--write-docs) ;;
    *) usage ;;
  esac
  shift
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
if [ $peers = ON ]; then
  mkdir -p "$build/node"
  cp benchmarks/peers/node/package.json benchmarks/peers/node/bench.js "$build/node/"
  quietly npm install --prefix "$build/node" --no-package-lock --no-audit --no-fund
  quietly "$program" --write-inputs="$build/inputs.json"
fi

results=()
for ((run = 1; run <= runs; ++run)); do
  echo "Measuring, run $run of $runs ..." >&2
  native=$build/native-$run.json node=$build/node-$run.json
  rm -f "$native" "$node"
  "$program" --passes=$repetitions --out="$native" --benchmark_min_time=$seconds
  results+=(--run "$native")
  if [ $peers = ON ]; then
    echo "  the peers in Node" >&2
    node "$build/node/bench.js" "$build/inputs.json" "$node" $node_repetitions $node_seconds
    results+=("$node")
  fi
done

python=/usr/bin/python3  # the one for which Debian packages install
[ -x $python ] || python=python3
"$python" -B tools/performance/report.py "${results[@]}" --build "$build" --out out "${write_docs[@]}"
