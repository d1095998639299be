#!/usr/bin/env bash
# The reference: every public declaration, field, enumerator, parameter and result has a comment
# that Doxygen reads without a warning.
#   reference_test.sh BUILD_DIR
# Status 77 without Doxygen.
set -euo pipefail
configuration=$1/docs/Doxyfile
if [ ! -e "$configuration" ] || ! command -v doxygen >/dev/null; then
    echo 'skipped: not installed: doxygen'
    exit 77
fi
scratch=$(mktemp -d "${TMPDIR:-/tmp}/corvella.XXXXXX")
trap 'rm -rf "$scratch"' EXIT

# The path of the sources contains a space.
sources=$(cd "$(dirname "$0")/../.." && pwd)
ln -s "$sources" "$scratch/the sources"

{
    sed "s|$sources\([/\"]\)|$scratch/the sources\1|g" "$configuration"
    echo "OUTPUT_DIRECTORY = $scratch"
} >"$scratch/Doxyfile"
doxygen "$scratch/Doxyfile" >"$scratch/log" 2>&1 || { cat "$scratch/log"; exit 1; }
[ ! -s "$scratch/log" ] || { cat "$scratch/log"; exit 1; }
[ -s "$scratch/html/index.html" ] || { echo 'the main page is missing'; exit 1; }

python3 -B "$(dirname "$0")/links.py" "$scratch/html"

# Doxygen reads the headers: each of these has its own page.
for header in error hooks c-utils wrap options web transaction platform; do
    [ -n "$(find "$scratch/html" -name "${header}_8h.html")" ] || {
        echo "the page of $header.h is missing"
        exit 1
    }
done
