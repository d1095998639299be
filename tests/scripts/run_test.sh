#!/usr/bin/env bash
# Runs the scripts run and test as a new user would, in a copy of the tree.
#   run_test.sh SOURCE_DIR BUILD_DIR
# Status 77 when run would have to install packages first.
set -euo pipefail
sources=$1 build=$2
scratch=$(cd "$(mktemp -d)" && pwd -P)
copy=$scratch/copy
service=

# Prints the numbers of the processes that have anything of the copy on their command line.
processes_of_copy() {
    local file
    for file in /proc/[0-9]*/cmdline; do
        # It may be gone by now.
        if { tr '\0' ' ' <"$file"; } 2>/dev/null | grep -F -e "$copy/" >/dev/null; then
            file=${file%/cmdline}
            printf '%s ' "${file##*/}"
        fi
    done
}

clean_up() {
    local process
    for process in $service $(processes_of_copy); do
        kill "$process" 2>/dev/null || true
    done
    rm -rf "$scratch"
}
trap clean_up EXIT

mkdir "$copy"
tar -C "$sources" --exclude=./.git --exclude=./build --exclude=./install \
    --exclude="./${build#"$sources/"}" -cf - . | tar -C "$copy" -xf -

fail() {
    printf 'failed: %s\n' "$*"
    cat "$scratch/out" "$scratch/err"
    exit 1
}

# try STATUS COMMAND...: runs a command, which is to end with that status, in another folder.
try() {
    local expected=$1 status=0
    shift
    (cd / && "$@") >"$scratch/out" 2>"$scratch/err" </dev/null || status=$?
    [ "$status" = "$expected" ] || fail "status $status, not $expected: $*"
}

expect_in() {
    grep -qF -e "$2" "$scratch/$1" || fail "not in what went to $1: $2"
}

expect_output() {
    [ "$(cat "$scratch/out")" = "$1" ] || fail "other output than: $1"
}

# A process that was ended may take a moment.
expect_nothing_left() {
    for _ in {1..100}; do
        [ -n "$(processes_of_copy)" ] || return 0
        sleep 0.05
    done
    fail "left behind: processes $(processes_of_copy)"
}

# Starts the stand-in of the service on a free port and leaves the number in $port.
start_service() {
    local wait
    for _ in {1..20}; do
        : >"$scratch/log"
        port=$((20000 + RANDOM % 20000))
        php -S "127.0.0.1:$port" "$sources/examples/service/service.php" >"$scratch/log" 2>&1 &
        service=$!
        for ((wait = 0; wait < 200; ++wait)); do
            ! grep -q "(http://127.0.0.1:$port) started" "$scratch/log" || return 0
            kill -0 "$service" 2>/dev/null || break
            sleep 0.05
        done
        kill "$service" 2>/dev/null || true
        service=
    done
    fail "no service: $(cat "$scratch/log")"
}

: >"$scratch/out" 2>"$scratch/err"
missing=$(bash -c '. "$1" && missing_packages g++ cmake ninja-build php-cli' bash \
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
expect_nothing_left
