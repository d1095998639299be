#!/usr/bin/env bash
# The reference: every public declaration, field and enumerator has a comment that Doxygen reads
# without a warning, and every function that returns something says what.
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

# A path with a space leads to the sources.
sources=$(cd "$(dirname "$0")/../.." && pwd)
ln -s "$sources" "$scratch/the sources"

# run_doxygen SETTING...: runs it with further settings and leaves what it said in $scratch/log.
run_doxygen() {
    {
        sed "s|$sources\([/\"]\)|$scratch/the sources\1|g" "$configuration"
        printf '%s\n' "OUTPUT_DIRECTORY = $scratch" "$@"
    } >"$scratch/Doxyfile"
    doxygen "$scratch/Doxyfile" >"$scratch/log" 2>&1
}

run_doxygen || { cat "$scratch/log"; exit 1; }
[ ! -s "$scratch/log" ] || { cat "$scratch/log"; exit 1; }
[ -s "$scratch/html/index.html" ] || { echo 'there is no main page'; exit 1; }

python3 -B "$(dirname "$0")/links.py" "$scratch/html"

# That it looks at the headers at all: each of these is a page of its own.
for header in error hooks c-utils wrap options web transaction platform; do
    [ -n "$(find "$scratch/html" -name "${header}_8h.html")" ] || {
        echo "there is no page of $header.h"
        exit 1
    }
done

run_doxygen 'WARN_NO_PARAMDOC = YES' 'WARN_AS_ERROR = NO' || true
if grep 'return type' "$scratch/log"; then
    exit 1
fi
