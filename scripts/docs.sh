#!/usr/bin/env bash
# Builds the documentation as a site of plain files: the comments of the headers, the guides, the examples. Fails on
# any warning, on a link that leads nowhere, and on anything that a page would load from another host.
# Usage: docs.sh [FOLDER]   where the site goes (build/docs)
set -euo pipefail
here=$(pwd)
root=$(cd "$(dirname "$0")/.." && pwd)

"$root/scripts/install_packages.sh" doxygen python3

output=${1:-$root/build/docs}
case $output in /*) ;; *) output=$here/$output ;; esac
cd "$root"
VOREL_VERSION=$(awk '/define VOREL_VERSION_(MAJOR|MINOR|PATCH)/ {printf "%s%s", dot, $3; dot = "."}' base/version.h)
export VOREL_VERSION VOREL_DOCS_OUTPUT=$output
mkdir -p "$output"
rm -rf "$output/html"
doxygen docs/site/Doxyfile
docs/site/check_site.py "$output/html"
echo "The site: $output/html/index.html"
