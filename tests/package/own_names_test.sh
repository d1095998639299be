#!/usr/bin/env bash
# A caller may define any name that the layer uses internally, and still gets the layer's answers:
# as a part of its own build and with the static libraries, at -O0 and -O2.
set -euo pipefail
# shellcheck source=common.sh
. "$(dirname "$0")/common.sh"

# Builds that read no names define none; those of the libraries at -O0, inline ones too, follow.
: >"$scratch/own_names.cpp"

# build LEVEL TARGET: as a part of the caller's build.
build() {
    quietly cmake -S "$here/consumer" -B "$scratch/$1" -DCORVELLA_WAY=add_subdirectory \
        -DCORVELLA_SOURCES="$CORVELLA_SOURCES" -DCORVELLA_OWN_NAMES="$scratch/own_names.cpp" \
        -DCMAKE_CXX_COMPILER="$CORVELLA_COMPILER" -DCMAKE_CXX_FLAGS="$CORVELLA_FLAGS $1" \
        -DCMAKE_BUILD_TYPE=None
    quietly cmake --build "$scratch/$1" -j 2 --target "$2"
}

build -O0 corvella_web
python3 "$here/own_names.py" nm "$scratch"/-O0/corvella/*/libcorvella_*.a >"$scratch/names"
mv "$scratch/names" "$scratch/own_names.cpp"
install_from "$CORVELLA_BUILD"
for level in -O0 -O2; do
    build "$level" own_names_caller
    "$scratch/$level/own_names_caller"
    CORVELLA_FLAGS="$CORVELLA_FLAGS $level $scratch/own_names.cpp" \
        compile_with_pkg_config "$prefix" own_names_caller
    "$scratch/own_names_caller"
done
