#!/usr/bin/env bash
# Checks that an example prints what stands beside its source. Usage: example.sh PROGRAM EXPECTED_OUTPUT
set -euo pipefail
"$1" | diff - "$2" && echo "$(basename "$1") prints $(wc -l < "$2") lines as expected"
