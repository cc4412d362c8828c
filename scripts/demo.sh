#!/usr/bin/env bash
# Builds the tool and draws direction symbols along the visible part of a route: the project's own sample, or any GeoJSON
# file. Usage: demo.sh [ROUTE.geojson] [options of `vorel symbols`]
set -euo pipefail
here=$(pwd)
root=$(cd "$(dirname "$0")/.." && pwd)

"$root/scripts/install_packages.sh" g++ cmake ninja-build libcli11-dev libsimdjson-dev libpugixml-dev nlohmann-json3-dev

build=$root/build/demo
log=$root/build/demo.log
mkdir -p "$root/build"
if ! { cmake -S "$root" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release -DVOREL_BUILD_TESTS=OFF &&
       cmake --build "$build"; } > "$log" 2>&1; then
  tail -n 30 "$log" >&2
  echo "The build failed; the whole log is in $log" >&2
  exit 1
fi

route=$root/samples/city_drive.geojson
if [ $# -gt 0 ] && [ "${1#-}" = "$1" ]; then
  case $1 in
    /*) route=$1 ;;
    *) route=$here/$1 ;;
  esac
  shift
fi
mkdir -p "$root/out"
name=$(basename "${route%.*}")
"$build/tools/vorel/vorel" symbols "$route" --out "$root/out/$name.symbols.geojson" \
  --picture "$root/out/$name.symbols.svg" "$@"
echo "The picture: $root/out/$name.symbols.svg (any browser shows it)"
echo "The symbols: $root/out/$name.symbols.geojson"
