#!/usr/bin/env bash
# Without the tests, no package that only they need is looked for: neither in a fresh folder nor in
# one that had them.
#   without_tests_test.sh GOOGLETEST_SOURCES
set -euo pipefail
googletest=$1
# shellcheck source=common.sh
. "$(dirname "$0")/common.sh"

# configure FOLDER OPTION...
configure() {
    local folder=$scratch/$1
    shift
    quietly cmake -S "$CORVELLA_SOURCES" -B "$folder" -DCMAKE_CXX_COMPILER="$CORVELLA_COMPILER" \
        -DCMAKE_CXX_FLAGS="$CORVELLA_FLAGS" "$@"
    cmake --build "$folder" --target help >"$scratch/targets"
}

# Prints the targets of the tests, GoogleTest and the examples, as the build tool lists them.
test_targets() {
    local tests='(^|[^a-z])tests?([^a-z]|$)'
    grep -Ei "$tests|gtest|harness|stand_ins|get_page|post_form" "$scratch/targets" || true
}

expect_no_tests() {
    grep -q corvella_web "$scratch/targets" || { echo 'no target of the layer'; exit 1; }
    [ -z "$(test_targets)" ] || { printf '%s\n' "in the $1:" "$(test_targets)"; exit 1; }
}

without_tests=(-DBUILD_TESTING=OFF -DCORVELLA_GOOGLETEST_SOURCES=/nowhere)
configure fresh "${without_tests[@]}"
expect_no_tests 'fresh folder'

configure used -DCORVELLA_GOOGLETEST_SOURCES="$googletest"
[ -n "$(test_targets)" ] || { echo 'no tests at all'; exit 1; }
configure used "${without_tests[@]}"
expect_no_tests 'folder that had tests'

# Tests without GoogleTest: a warning, no error.
cmake -S "$CORVELLA_SOURCES" -B "$scratch/lacking" -DCMAKE_CXX_COMPILER="$CORVELLA_COMPILER" \
    -DCMAKE_CXX_FLAGS="$CORVELLA_FLAGS" -DCORVELLA_GOOGLETEST_SOURCES=/nowhere \
    >"$scratch/log" 2>&1 || { cat "$scratch/log"; exit 1; }
tr -s ' \n' '  ' <"$scratch/log" | grep -qF "set CORVELLA_GOOGLETEST_SOURCES to its folder" ||
    { cat "$scratch/log"; exit 1; }
