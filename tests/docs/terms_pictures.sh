#!/usr/bin/env bash
# Checks that the drawings of docs/terms.md are those that the tool makes now, and that the page shows each of them.
# Usage: terms_pictures.sh VOREL
set -euo pipefail
vorel=${1:?usage: terms_pictures.sh VOREL}
cd "$(dirname "$0")/../.."

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
docs/terms/draw.sh "$vorel" "$work"
failures=0
if ! diff -rq docs/pictures/terms "$work"; then
  echo "docs/pictures/terms is not what the tool draws: run docs/terms/draw.sh"
  failures=1
fi
for picture in "$work"/*.svg; do
  name=$(basename "$picture")
  grep -q "(pictures/terms/$name)" docs/terms.md || { echo "docs/terms.md does not show $name"; failures=1; }
done
for name in $(grep -oE 'pictures/terms/[a-z_]+\.svg' docs/terms.md); do
  [ -f "docs/$name" ] || { echo "docs/terms.md shows $name, which is not there"; failures=1; }
done
[ "$failures" -eq 0 ] && echo "$(ls "$work" | wc -l) pictures, all current"
exit "$failures"
