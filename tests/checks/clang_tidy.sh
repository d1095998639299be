#!/usr/bin/env bash
# clang-tidy finds nothing in the product, and clang no warning. clang_tidy.sh TREE BUILD
# BUILD has the commands of its compiler. ./test lint looks into the tests too, as clang++ compiles.
set -euo pipefail
build=$(cd "$2" && pwd)
cd "$1"
if [ ! -e "$build/compile_commands.json" ]; then
    echo 'skipped: the build has no list of commands'
    exit 77
fi
log=$(mktemp)
trap 'rm -f "$log"' EXIT
find support web platform tool -name '*.cpp' -print0 |
    xargs -0 -n 1 -P "$(nproc)" clang-tidy -quiet -p "$build" \
        --extra-arg=-Wno-unknown-warning-option >"$log" 2>&1 || status=$?
if grep -v -e ' generated\.$' -e '^Suppressed ' -e '^Use -header-filter' "$log"; then
    exit 1
fi
exit "${status-0}"
