#!/usr/bin/env bash
# clang-tidy and clang find nothing in the product. clang_tidy.sh TREE BUILD
# BUILD has the compile commands. ./test lint adds the static analyser and the tests.
set -euo pipefail
build=$(cd "$2" && pwd)
cd "$1"
if [ ! -e "$build/compile_commands.json" ]; then
    echo 'skipped: the build has no list of commands'
    exit 77
fi

# look_into BUILD SOURCE: shows what is found. What one clang-tidy writes is kept from the others',
# because each writes its lines in pieces.
look_into() {
    local written
    local status=0
    written=$(clang-tidy -quiet -p "$1" '--checks=-clang-analyzer-*' \
        --extra-arg=-Wno-unknown-warning-option "$2" 2>&1) || status=$?
    if grep -v -e ' generated\.$' -e '^Suppressed ' -e '^Use -header-filter' -e '^$' \
        <<<"$written"; then
        return 1
    fi
    return "$status"
}
export -f look_into

find support web platform tool -name '*.cpp' -print0 |
    xargs -0 -n 1 -P "$(getconf _NPROCESSORS_ONLN)" bash -c 'look_into "$@"' look_into "$build"
