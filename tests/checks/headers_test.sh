#!/usr/bin/env bash
# Every header of the product compiles alone, and twice.
#   headers_test.sh ROOT COMPILER INCLUDE_FOLDER...
set -euo pipefail
root=$1 compiler=$2
shift 2
folders=("$root" "$@")
cd "$root"

# compiles HEADER
compiles() {
    "$compiler" -std=c++17 -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror -fsyntax-only \
        -DCORVELLA_MAKER_DOMAIN='"example.org"' "${folders[@]/#/-I}" \
        -include "$1" -include "$1" -x c++ /dev/null
}

mapfile -t headers < <(find support web platform tool -name '*.h' | sort)
[ "${#headers[@]}" -gt 0 ]
failures=0
for header in "${headers[@]}"; do
    # Without its guard a header that defines nothing would pass twice as well.
    grep -q '^#pragma once$' "$header" || { echo "$header has no #pragma once"; failures=1; }
    compiles "$header" || { echo "$header does not compile alone, twice"; failures=1; }
done
exit "$failures"
