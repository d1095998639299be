#!/usr/bin/env bash
# A shared library offers the names of its list and no other, and the lists have what the published
# headers declare.
set -euo pipefail
# shellcheck source=common.sh
. "$(dirname "$0")/common.sh"
export LC_ALL=C

# expect_same WHAT FILE FILE
expect_same() {
    diff "$2" "$3" >"$scratch/difference" || fail "$1:" "$(cat "$scratch/difference")"
}

listed() {
    grep -v '^#' "$CORVELLA_SOURCES/$1/exported-symbols.txt"
}

# Without arguments, which differ with the word size, and without the name of the symbol version.
offered() {
    nm -DC --defined-only --without-symbol-versions "$CORVELLA_SHARED_BUILD/$1/libcorvella_$1.so" |
        grep -v ' A CORVELLA_' | sed -E 's/^[0-9a-f]+ . //; s/\(.*/()/' | sort -u
}

# declared HEADER...: functions with their parentheses and variables without, as they are listed.
declared() {
    cat "$@" | sed -E 's://.*::; /^#/d' | tr '\n' ' ' |
        sed -E 's/\[\[[^]]*\]\]//g; s/\{[^{}]*\}//g' | tr ';' '\n' | grep -vE '^ *(using|enum) ' |
        sed -nE -e 's/^[^(]*[ *]([a-z_0-9]+)\(.*/\1()/p' \
            -e 's/^ *extern [^(]*[ *]([a-z_0-9]+)(\[[0-9]+\])?$/\1/p' | sort -u
}

# promised: the names whose types the caller's program of the package knows.
promised() {
    tr '\n' ' ' <"$here/consumer/published_interface.cpp" |
        grep -oE 'promise<[^;]*>\( *\w+\);' | sed -E 's/.*\( *(\w+)\);/\1/' | sort
}

promised >"$scratch/promised"
for library in support web; do
    listed $library
done | grep -v -e '^typeinfo ' -e '::' | sed 's/()$//' | sort >"$scratch/listed"
expect_same "listed < and promised >" "$scratch/listed" "$scratch/promised"

for library in support web; do
    listed $library >"$scratch/listed"
    sort "$scratch/listed" >"$scratch/sorted"
    offered $library >"$scratch/offered"
    expect_same "listed < and offered > by $library" "$scratch/sorted" "$scratch/offered"
done

install_from "$CORVELLA_SHARED_BUILD"
cp -R "$CORVELLA_SOURCES/platform" "$prefix/include/corvella"
for library in support web platform; do
    listed $library | grep -v '^typeinfo ' | sort >"$scratch/listed"
    find "$prefix/include/corvella/$library" -name '*.h' >"$scratch/headers"
    # shellcheck disable=SC2046 # no blanks in the names
    declared $(cat "$scratch/headers") >"$scratch/declared"
    expect_same "listed < and declared > of $library" "$scratch/listed" "$scratch/declared"
done
