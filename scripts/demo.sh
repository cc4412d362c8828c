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
out=$root/out/$name.symbols.geojson
picture=$root/out/$name.symbols.svg
given=()
for ((i = 1; i <= $#; i++)); do
  next=$((i + 1))
  case ${!i} in
    --out) out=${!next:-} ;;
    --out=*) out=${!i#--out=} ;;
    --picture) picture=${!next:-} ;;
    --picture=*) picture=${!i#--picture=} ;;
    *)
      given+=("${!i}")
      continue
      ;;
  esac
  case ${!i} in --out | --picture) i=$next ;; esac
done
"$build/tools/vorel/vorel" symbols "$route" --out "$out" --picture "$picture" ${given[@]+"${given[@]}"}
echo "The picture: $picture (any browser shows it)"
echo "The symbols: $out"
