#!/usr/bin/env bash
# Uses the layer as a caller outside this tree would.
#   consumer_test.sh WAY BUILD_DIR SOURCE_DIR COMPILER FLAGS
# WAY is find_package, pkg_config or add_subdirectory. The caller's programs are built in a scratch
# folder and must say the right thing.
set -euo pipefail
way=$1 build=$2 sources=$3 compiler=$4 flags=$5
here=$(cd "$(dirname "$0")" && pwd)
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

install_package() {
    cmake --install "$build" --prefix "$scratch/prefix" >"$scratch/log"
    # Moved away from where it was installed, to show that nothing remembers the place.
    mv "$scratch/prefix" "$scratch/moved"
    pc_dir=$(dirname "$(find "$scratch/moved" -name corvella.pc)")
}

build_with_cmake() {
    cmake -S "$here/consumer" -B "$scratch/build" -DCMAKE_CXX_COMPILER="$compiler" \
        -DCMAKE_CXX_FLAGS="$flags" "$@" >"$scratch/log" || { cat "$scratch/log"; exit 1; }
    cmake --build "$scratch/build" -j 2 >"$scratch/log" || { cat "$scratch/log"; exit 1; }
    callers=$scratch/build
}

case $way in
find_package)
    install_package
    build_with_cmake -DCMAKE_PREFIX_PATH="$scratch/moved"
    ;;
pkg_config)
    install_package
    callers=$scratch
    for caller in support_caller web_caller; do
        # shellcheck disable=SC2046,SC2086 # the flags are words
        "$compiler" -std=c++17 $flags "$here/consumer/$caller.cpp" -o "$scratch/$caller" \
            $(PKG_CONFIG_PATH=$pc_dir pkg-config --cflags --libs corvella)
    done
    ;;
add_subdirectory)
    build_with_cmake -DCORVELLA_SOURCES="$sources" -DCORVELLA_BUILD_TOOL=OFF
    ;;
esac

expect() {
    [ "$2" = "$1" ] || { printf 'expected: %s\nsaid:     %s\n' "$1" "$2"; exit 1; }
}
expect $'verbose\nverbose\n1-jan-2000' "$("$callers/support_caller" -vv)"
expect '-1 Protocol should be HTTP, not FTP' "$("$callers/web_caller")"
