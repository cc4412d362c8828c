#!/usr/bin/env bash
# Installs the project, static and shared, into a fresh prefix, moves it, and builds and runs a client against it with
# the CMake package and with pkg-config; then builds a client that holds the sources, by FetchContent and by
# add_subdirectory. Usage: run.sh BUILD_DIRECTORY
set -euo pipefail
work=${1:?usage: run.sh BUILD_DIRECTORY}
rm -rf "$work"
mkdir -p "$work"
work=$(cd "$work" && pwd)
cd "$(dirname "$0")/../.."
source=$(pwd)

quietly() { "$@" > "$work/log" 2>&1 || { cat "$work/log"; echo "failed: $*"; exit 1; }; }

for shared in OFF ON; do
  kind=$([ $shared = ON ] && echo shared || echo static)
  quietly cmake -S . -B "$work/$kind" -G Ninja -DCMAKE_BUILD_TYPE=Release -DBUILD_SHARED_LIBS=$shared \
    -DVOREL_BUILD_TESTS=OFF -DVOREL_BUILD_TOOLS=OFF
  quietly cmake --build "$work/$kind"
  quietly cmake --install "$work/$kind" --prefix "$work/$kind-installed" --strip
  mv "$work/$kind-installed" "$work/$kind-moved"
  prefix=$work/$kind-moved

  quietly cmake -S tests/consumer -B "$work/$kind-cmake" -G Ninja -DCMAKE_PREFIX_PATH="$prefix" \
    -DCMAKE_BUILD_TYPE=Release
  quietly cmake --build "$work/$kind-cmake"
  libdir=$(dirname "$(find "$prefix" -name 'libvorel_geometry.*' | head -n 1)")
  echo "$kind, CMake:      $(LD_LIBRARY_PATH=$libdir "$work/$kind-cmake/consumer")"

  export PKG_CONFIG_PATH=$libdir/pkgconfig
  # shellcheck disable=SC2046
  g++ -std=c++17 tests/consumer/consumer.cpp $(pkg-config --cflags --libs vorel) -o "$work/$kind-pkg-config"
  echo "$kind, pkg-config: $(LD_LIBRARY_PATH=$libdir "$work/$kind-pkg-config")"

  if grep -rlF "$source" "$prefix"; then
    echo "the files above hold the path of the build"
    exit 1
  fi
  headers=$(cd "$prefix/include/vorel" && find . -name '*.h' | sort)
  # Each installed header stands by itself and includes nothing that is not installed.
  for header in $headers; do
    echo "#include \"${header#./}\"" | g++ -std=c++17 -Wall -Wextra -Werror -fsyntax-only -x c++ -I"$prefix/include/vorel" -
  done
done

libdir=$(dirname "$(find "$work/shared-moved" -name libvorel_geometry.so)")
version=$(awk '/define VOREL_VERSION_(MAJOR|MINOR)/ {printf "%s%s", separator, $3; separator = "."}' base/version.h)
for name in base logging geometry; do
  file=$libdir/libvorel_$name.so
  objdump -p "$file" | grep -qE "SONAME +libvorel_$name\.so\.${version//./\\.}\$" || { echo "$file has a wrong SONAME"; exit 1; }
done

# subproject KIND [cmake options]: the client that builds the sources by itself.
subproject() {
  local kind=$1
  shift
  quietly cmake -S tests/consumer/subproject -B "$work/$kind" -G Ninja "$@"
  quietly cmake --build "$work/$kind"
  quietly cmake --install "$work/$kind" --prefix "$work/$kind-installed"
  local installed
  installed=$(cd "$work/$kind-installed" && find . -type f)
  [ "$installed" = ./bin/consumer ] || { echo "$kind installs more than the client: $installed"; exit 1; }
  [ "$(ctest --test-dir "$work/$kind" -N | tail -n 1)" = "Total Tests: 0" ] || { echo "$kind has tests of the library"; exit 1; }
  echo "$kind: $("$work/$kind/consumer")"
}
subproject FetchContent -DFETCHCONTENT_SOURCE_DIR_VOREL="$source" -DFETCHCONTENT_FULLY_DISCONNECTED=ON
subproject add_subdirectory -DBY_SUBDIRECTORY="$source"

# A shared library shows its clients the marked interface and nothing else of its own.
hidden=$(nm -DC --defined-only "$work"/shared-moved/lib*/libvorel_geometry.so "$work"/shared-moved/lib*/*/libvorel_geometry.so \
  2> /dev/null | grep -E 'vorel::internal|anonymous' || true)
[ -z "$hidden" ] || { echo "exported but internal: $hidden"; exit 1; }
standard=$(nm -D --defined-only "$libdir"/libvorel_*.so | grep -E ' _Z(N|NK|T.|GV)?(S|9__gnu_cxx)' || true)
[ -z "$standard" ] || { echo "exported but of the standard library: $standard"; exit 1; }
# The geometry library keeps small: at most 120 KiB as `cmake --install --strip` above leaves it. The limit is meant for a
# plain optimised build on x86-64.
limit=122880
for name in base logging geometry; do
  bytes=$(stat -Lc %s "$libdir/libvorel_$name.so")
  echo "libvorel_$name.so, stripped: $bytes bytes"
done
if [ "$(uname -m)" != x86_64 ] || [ -n "${CXXFLAGS:-}" ]; then
  echo "limit of the size: skipped, for other processors or with CXXFLAGS"
elif [ "$bytes" -gt $limit ]; then
  echo "libvorel_geometry.so is too large: $bytes bytes stripped, the limit is $limit"
  exit 1
fi
