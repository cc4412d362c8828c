#!/usr/bin/env bash
# Makes the Debian packages, installs them into a fresh root with its own package database, uses them there, removes them,
# and compares the file lists. Nothing outside of BUILD_DIRECTORY changes.
# Usage: run.sh BUILD_DIRECTORY TOOL_BUILD   (TOOL_BUILD: a build that has the tool)
set -euo pipefail
work=${1:?usage: run.sh BUILD_DIRECTORY TOOL_BUILD}
tool_build=${2:?usage: run.sh BUILD_DIRECTORY TOOL_BUILD}
skip() { echo "skipped: $*"; exit 77; }
[ "$(id -u)" -eq 0 ] || skip "dpkg installs as root only"
for program in dpkg dpkg-deb dpkg-shlibdeps pkg-config file; do
  command -v $program > /dev/null || skip "$program is not installed"
done
[ -x "$tool_build/tools/vorel/vorel" ] || skip "the tool is not built"
fail() { echo "$*"; exit 1; }

rm -rf "$work"
mkdir -p "$work"
work=$(cd "$work" && pwd)
cd "$(dirname "$0")/../.."
scripts/package.sh --output "$work/packages" --tool-from "$tool_build"
library=$(echo "$work"/packages/libvorel0*.deb)
development=$(echo "$work"/packages/libvorel-dev*.deb)
tools=$(echo "$work"/packages/vorel-tools*.deb)

# The library's name follows the version of its binary interface; it tells its clients what to depend on and has the
# loader's cache renewed.
soname=$(dpkg-deb --fsys-tarfile "$library" | tar -xO --wildcards '*/libvorel_geometry.so.*.*.*' > "$work/geometry.so" &&
  objdump -p "$work/geometry.so" | awk '/SONAME/ {print $2}')
package=$(dpkg-deb -f "$library" Package)
[ "$package" = "libvorel${soname#libvorel_geometry.so.}" ] || fail "$package holds $soname"
dpkg-deb -I "$library" shlibs | grep -qx "libvorel_geometry ${soname#*.so.} $package (>= .*)" || fail "wrong shlibs"
dpkg-deb -I "$library" triggers | grep -q 'ldconfig' || fail "no ldconfig trigger"
dpkg-deb -f "$development" Depends | grep -q "$package (= " || fail "libvorel-dev does not depend on its library"
# What the machine that runs the test has must satisfy what the packages ask of other packages.
for deb in "$library" "$tools"; do
  depends=$(dpkg-deb -f "$deb" Depends)
  [[ $depends == *libc6* && $depends == *libstdc++6* ]] || fail "$deb depends on: $depends"
  for other in $(sed 's/([^)]*)//g; s/,/ /g' <<< "$depends"); do
    [ "$(dpkg-query -W -f '${db:Status-Status}' "$other")" = installed ] || fail "$deb depends on $other"
  done
done

root=$work/root
mkdir -p "$root"/var/lib/dpkg/{info,updates,triggers}
touch "$root/var/lib/dpkg/status" "$root/var/lib/dpkg/available"
files() { find "$root" -path "$root/var/lib/dpkg" -prune -o -print | sort; }
in_root() { dpkg --root="$root" --log=/dev/null --force-depends "$@" > "$work/log" 2>&1 || { cat "$work/log"; fail "failed: dpkg $*"; }; }
before=$(files)
in_root --install "$library" "$development" "$tools"
[ "$(dpkg-query --admindir="$root/var/lib/dpkg" -W -f '${db:Status-Status}\n' | sort -u)" = installed ] || fail "not installed"

libdir=$(dirname "$(find "$root" -name 'libvorel_geometry.so')")
[ "$libdir" = "$root/usr/lib/$(dpkg-architecture -qDEB_HOST_MULTIARCH)" ] || fail "libraries in $libdir"
"$root/usr/bin/vorel" measure samples/city_drive.geojson | head -n 2
# shellcheck disable=SC2046
PKG_CONFIG_PATH=$libdir/pkgconfig g++ -std=c++17 tests/consumer/consumer.cpp \
  $(PKG_CONFIG_PATH=$libdir/pkgconfig pkg-config --cflags --libs vorel) -o "$work/consumer"
LD_LIBRARY_PATH=$libdir "$work/consumer"
cmake -S tests/consumer -B "$work/cmake" -DCMAKE_PREFIX_PATH="$root/usr" -DCMAKE_LIBRARY_ARCHITECTURE="$(basename "$libdir")" \
  > "$work/log" 2>&1 || { cat "$work/log"; fail "find_package(vorel) failed"; }

in_root --purge vorel-tools libvorel-dev "$package"
# dpkg leaves the folders that other packages would share.
left=$(comm -13 <(echo "$before") <(files) | while read -r path; do [ -d "$path" ] || echo "$path"; done)
[ -z "$left" ] || fail "left behind: $left"
left=$(comm -13 <(echo "$before") <(files) | grep vorel/ || true)
[ -z "$left" ] || fail "left behind: $left"
if command -v lintian > /dev/null; then
  lintian --allow-root --fail-on error "$work"/packages/*.deb || fail "lintian finds errors"
fi
echo "installed, used and removed: $(cd "$work/packages" && echo *.deb)"
