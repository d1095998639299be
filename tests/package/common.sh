# shellcheck shell=bash
# What the tests of the package share. Read by them, not run. They get from CMakeLists.txt, in the
# environment: CORVELLA_SOURCES, CORVELLA_BUILD, CORVELLA_SHARED_BUILD and CORVELLA_STATIC_BUILD,
# the folders of the sources, of the build that the test belongs to and of those as they are
# shipped; CORVELLA_VERSION, CORVELLA_COMPILER and CORVELLA_FLAGS.
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
scratch=$(cd "$(mktemp -d "${TMPDIR:-/tmp}/corvella.XXXXXX")" && pwd -P)
trap 'rm -rf "$scratch"' EXIT

# A compiler cache would write other names of the folders into debugging information than the
# compiler is told to leave out.
unset CCACHE_BASEDIR

fail() {
    printf '%s\n' "$@"
    exit 1
}

# quietly COMMAND...: shows what a command said only when it fails.
quietly() {
    "$@" >"$scratch/log" 2>&1 || fail "failed: $*" "$(cat "$scratch/log")"
}

# expect EXPECTED SAID
expect() {
    [ "$2" = "$1" ] || fail "expected: $1" "said:     $2"
}

# install_from BUILD OPTION...: installs into a prefix and moves that, so that it shows when
# anything remembers the place; leaves the new one in $prefix.
install_from() {
    quietly cmake --install "$1" --prefix "$scratch/prefix" "${@:2}"
    prefix=$scratch/moved
    mv "$scratch/prefix" "$prefix"
}

# compile_with_pkg_config SEARCH_DIR CALLER...: builds callers by a bare compiler line, from their
# sources here or, of those that a test wrote, in $scratch.
compile_with_pkg_config() {
    local caller source words pc_dir
    pc_dir=$(dirname "$(find "$1" -name corvella.pc)")
    words=$(PKG_CONFIG_PATH=$pc_dir pkg-config --cflags --libs corvella)
    for caller in "${@:2}"; do
        source=$here/consumer/$caller.cpp
        [ -e "$source" ] || source=$scratch/$caller.cpp
        # shellcheck disable=SC2086 # the flags are words
        quietly "$CORVELLA_COMPILER" -std=c++17 $CORVELLA_FLAGS "$source" \
            -o "$scratch/$caller" $words
    done
}
