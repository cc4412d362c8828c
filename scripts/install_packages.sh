#!/usr/bin/env bash
# Makes sure that the named Debian packages are installed: asks apt for those that are missing, as root or by sudo,
# quietly, and does nothing when none is. Usage: install_packages.sh PACKAGE...
set -euo pipefail

missing=()
if ! command -v dpkg-query > /dev/null || ! command -v apt-get > /dev/null; then
  echo "This is not a Debian system. Please install what these Debian packages hold, then run the script again" \
       "with VOREL_SKIP_INSTALL=1:" >&2
  printf '  %s\n' "$@" >&2
  [ -n "${VOREL_SKIP_INSTALL:-}" ] && exit 0
  exit 1
fi
[ -n "${VOREL_SKIP_INSTALL:-}" ] && exit 0

for package in "$@"; do
  state=$(dpkg-query -W -f '${db:Status-Status}' "$package" 2> /dev/null || true)
  [ "$state" = installed ] || missing+=("$package")
done
[ ${#missing[@]} -eq 0 ] && exit 0

as_root=()
if [ "$(id -u)" -ne 0 ]; then
  if ! command -v sudo > /dev/null; then
    echo "Please install as root: apt-get install ${missing[*]}" >&2
    exit 1
  fi
  as_root=(sudo)
fi
echo "Installing ${missing[*]} ..." >&2
log=$(mktemp)
trap 'rm -f "$log"' EXIT
apt() { "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -o DPkg::Lock::Timeout=300 -qq "$@" >> "$log" 2>&1; }
if ! { apt install -y --no-install-recommends "${missing[@]}" ||
       { apt update && apt install -y --no-install-recommends "${missing[@]}"; }; }; then
  tail -n 20 "$log" >&2
  echo "Could not install: ${missing[*]}" >&2
  exit 1
fi
