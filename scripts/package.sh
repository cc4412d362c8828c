#!/usr/bin/env bash
# Makes the Debian packages: libvorel0.1 (shared libraries), libvorel-dev and vorel-tools.
# Usage: package.sh [--output DIRECTORY] [--tool-from BUILD]
#   --output     where the packages go (default: out/packages)
#   --tool-from  takes the tool from this finished build with static libraries instead of building it again
set -euo pipefail
output=out/packages
tool_build=
while [ $# -gt 0 ]; do
  case $1 in
    --output) output=$(realpath -m "${2:?--output needs a directory}"); shift 2 ;;
    --tool-from) tool_build=$(realpath "${2:?--tool-from needs a build directory}"); shift 2 ;;
    *) echo "usage: package.sh [--output DIRECTORY] [--tool-from BUILD]" >&2; exit 2 ;;
  esac
done
cd "$(dirname "$0")/.."
mkdir -p "$output"
output=$(realpath "$output")

packages=(g++ cmake ninja-build dpkg-dev file)
[ -n "$tool_build" ] || packages+=(libcli11-dev libsimdjson-dev libpugixml-dev nlohmann-json3-dev)
scripts/install_packages.sh "${packages[@]}"

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
quietly() { "$@" > "$work/log" 2>&1 || { cat "$work/log" >&2; echo "Failed: $*" >&2; exit 1; }; }
# The folder of the processor architecture, as Debian lays it out.
libdir=lib/$(dpkg-architecture -qDEB_HOST_MULTIARCH)
common=(-S . -G Ninja -DCMAKE_BUILD_TYPE=Release -DCMAKE_INSTALL_PREFIX=/usr "-DCMAKE_INSTALL_LIBDIR=$libdir"
  -DVOREL_BUILD_TESTS=OFF -DVOREL_INSTALL=ON)
hardening="-Wl,-z,relro -Wl,-z,now"
# make_packages BUILD COMPONENTS
make_packages() {
  (cd "$work" && quietly cpack --config "$1/CPackConfig.cmake" -G DEB -B "$work/packages" \
    -D "CPACK_COMPONENTS_ALL=$2" -D "CPACK_OUTPUT_FILE_PREFIX=$output")
}

quietly cmake "${common[@]}" -B "$work/libraries" -DBUILD_SHARED_LIBS=ON -DVOREL_BUILD_TOOLS=OFF \
  "-DCMAKE_SHARED_LINKER_FLAGS=$hardening"
quietly cmake --build "$work/libraries" --parallel "$(nproc)"
make_packages "$work/libraries" "runtime;development"

# The tool holds its own copy of the library: it needs no certain version of the shared ones.
if [ -z "$tool_build" ]; then
  tool_build=$work/tool
  quietly cmake "${common[@]}" -B "$tool_build" -DVOREL_BUILD_TOOLS=ON \
    -DCMAKE_POSITION_INDEPENDENT_CODE=ON "-DCMAKE_EXE_LINKER_FLAGS=-pie $hardening"
  quietly cmake --build "$tool_build" --parallel "$(nproc)" --target vorel
fi
make_packages "$tool_build" tools
ls "$output"/*.deb
