#!/usr/bin/env bash
# Checks that docs/reliability.md and the tests agree: each test that a table names exists, in a
# file that is built, and each test of a fault is named.
#   reliability_table_test.sh SOURCE_DIR
set -euo pipefail
sources=$1
name="\`[A-Za-z0-9]+\.[A-Za-z0-9]+\`"
scratch=$(mktemp -d "${TMPDIR:-/tmp}/corvella.XXXXXX")
trap 'rm -rf "$scratch"' EXIT

fail() {
    printf '%s\n' "$*" >&2
    exit 1
}

# Prints "Suite.Name" for each test of the given files.
tests_in() {
    cat "$@" | tr '\n' ' ' | grep -oE 'TEST(_F)?\( *[A-Za-z0-9_]+, *[A-Za-z0-9_]+\)' |
        sed -E 's/TEST(_F)?\( *([A-Za-z0-9_]+), *([A-Za-z0-9_]+)\)/\2.\3/' | sort -u
}

# Prints the tests that the last column of each table of a page names.
tests_named_in() {
    sed -n -E 's/^\|.*\|([^|]*)\|$/\1/p' "$1" |
        { grep -oE "$name" || true; } | tr -d "\`" | sort -u
}

# Prints the rows of a page's tables that name no test.
rows_without_test() {
    grep -E '^\|' "$1" | grep -vE '^\|-|\| Held by \|$' |
        grep -vE "$name \|\$" || true
}

# Prints the files of the folders that their CMakeLists.txt build.
built_files() {
    local file
    for file in "$sources"/tests/web/*_test.cpp "$sources"/tests/web/*/*_test.cpp; do
        if grep -qwF -e "${file##*/}" "${file%/*}/CMakeLists.txt"; then
            printf '%s\n' "$file"
        fi
    done
}

# Prints what is wrong with a page.
complaints_about() {
    tests_named_in "$1" >"$scratch/named"
    comm -13 "$scratch/existing" "$scratch/named" | sed 's/^/there is no test /'
    comm -23 "$scratch/of_faults" "$scratch/named" | sed 's/^/no table names /'
    rows_without_test "$1" | sed 's/^/no test holds /'
}

files=()
while IFS= read -r file; do
    files+=("$file")
done < <(built_files)
[ ${#files[@]} -gt 0 ] || fail "no test is built"
tests_in "${files[@]}" >"$scratch/existing"
grep -E '^(WebFault|WebEndurance|WebDescriptors|TransactionLimits)\.' "$scratch/existing" \
    >"$scratch/of_faults"

page=$sources/docs/reliability.md
found=$(complaints_about "$page")
[ -z "$found" ] || fail "$found"

# A page that had rotted would be noticed.
sed 's/WebFault\.OrderlyClose[A-Za-z]*/WebFault.Renamed/' "$page" >"$scratch/page"
printf '| a fault | -1 |\n' >>"$scratch/page"
found=$(complaints_about "$scratch/page")
for expected in 'there is no test WebFault.Renamed' 'no table names WebFault.OrderlyClose' \
    'no test holds | a fault'; do
    [[ $found == *"$expected"* ]] || fail "it goes unnoticed: $expected"
done
