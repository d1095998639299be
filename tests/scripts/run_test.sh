#!/usr/bin/env bash
# Runs the scripts run and test as a new user would, in a copy of the tree.
#   run_test.sh SOURCE_DIR BUILD_DIR
# Status 77 when run would have to install packages first.
set -euo pipefail
# shellcheck source=common.sh
. "$(dirname "$0")/common.sh"

# Starts the stand-in of the service and stores its port in $port.
start_service() {
    local i
    "$copy/build/release/examples/service/service" >"$scratch/words" &
    service=$!
    for ((i = 0; i < 200; ++i)); do
        port=$(sed -n 's/^port //p' "$scratch/words")
        [ -z "$port" ] || return 0
        sleep 0.05
    done
    fail "no service"
}

missing=$(bash -c '. "$1" && missing_packages g++ cmake ninja-build' bash \
    "$copy/scripts/common.sh")
if [ -n "$missing" ]; then
    printf 'skipped: not installed: %s\n' "$missing"
    exit 77
fi

# A word that test does not know: nothing is built.
try 1 "$copy/test" nonsense
expect_output ''
expect_in err "no kind 'nonsense' of test; ./test help tells"
try 0 "$copy/test" help
for text in default bench i386 sanitizers quick clang lint package coverage; do
    expect_in out "    $text "
done
[ ! -e "$copy/build" ] || fail 'test has built something'

# The main job; the build goes before it, and nothing but the reply to standard output.
try 0 "$copy/run"
for text in 'Corvella 5.2 is available; you have 5.1.' 'Version: 5.2' Download \
    http://www.morvane.example/download.html; do
    expect_in out "$text"
done
[ "$(wc -l <"$scratch/out")" = 4 ] || fail 'more or less than the four fields of the reply'
expect_in err building
expect_nothing_left

# A second time there is nothing to build.
try 0 "$copy/run" describe
expect_in out "$copy/build/release/tool/corvella describe"
! grep -q . "$scratch/err" || fail 'something was said'

# Words go on as they are, and the exit status comes back.
start_service
try 0 "$copy/run" get "http://127.0.0.1:$port/a/page"
expect_output 'GET /a/page'
try 0 "$copy/run" post "http://127.0.0.1:$port/form" 'name=two  words' 'star=*' 'empty='
expect_output $'POST /form\nname=two  words\nstar=*\nempty='
try 1 "$copy/run" get ftp://127.0.0.1/
expect_in err 'Protocol should be HTTP, not FTP'
try 2 "$copy/run" nonsense
kill "$service"
wait "$service" 2>/dev/null || true
expect_nothing_left
