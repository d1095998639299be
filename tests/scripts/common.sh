# shellcheck shell=bash
# What the tests of the scripts share. Sourced with the arguments SOURCE_DIR BUILD_DIR; makes a copy
# of the tree in $copy.
sources=$1 build=$2
scratch=$(cd "$(mktemp -d "${TMPDIR:-/tmp}/corvella.XXXXXX")" && pwd -P)
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

: >"$scratch/out" 2>"$scratch/err"
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
