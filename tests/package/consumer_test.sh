#!/usr/bin/env bash
# Uses the layer as a caller outside this tree would.
#   consumer_test.sh WAY LINKAGE
# WAY is find_package, pkg_config, add_subdirectory or fetch_content; LINKAGE static or shared. The
# callers' programs are built in a scratch folder and must say the right thing.
set -euo pipefail
way=$1 linkage=$2
# shellcheck source=common.sh
. "$(dirname "$0")/common.sh"

shared=OFF build=$CORVELLA_BUILD
if [ "$linkage" = shared ]; then
    shared=ON build=$CORVELLA_SHARED_BUILD
fi

# build_callers WAY OPTION...: with CMake; leaves their folder in $callers.
build_callers() {
    callers=$scratch/$1
    quietly cmake -S "$here/consumer" -B "$callers" -DCMAKE_CXX_COMPILER="$CORVELLA_COMPILER" \
        -DCMAKE_CXX_FLAGS="$CORVELLA_FLAGS" -DBUILD_SHARED_LIBS=$shared -DCORVELLA_WAY="$1" "${@:2}"
    quietly cmake --build "$callers" -j 2
}

build_callers_of_package() {
    build_callers find_package -DCMAKE_PREFIX_PATH="$prefix" \
        -DCORVELLA_EXPECTED_VERSION="$CORVELLA_VERSION"
}

# Shared libraries that were built for /usr are found there by the system. Here they are elsewhere.
find_shared_libraries() {
    LD_LIBRARY_PATH=$(dirname "$(find "$prefix" -name 'libcorvella_web.*' | head -n 1)")
    export LD_LIBRARY_PATH
}

case $way in
find_package)
    install_from "$build"
    build_callers_of_package
    find_shared_libraries
    ;;
pkg_config)
    install_from "$build"
    python3 "$CORVELLA_SOURCES/tests/published.py" "$CORVELLA_SOURCES" caller support web \
        >"$scratch/published_caller.cpp"
    compile_with_pkg_config "$prefix" abort_caller published_caller published_interface \
        support_caller version_caller web_caller
    callers=$scratch
    find_shared_libraries
    ;;
add_subdirectory)
    build_callers "$way" -DCORVELLA_SOURCES="$CORVELLA_SOURCES"
    # The callers install nothing of their own, and the subproject only when it is asked to.
    quietly cmake --install "$callers" --prefix "$scratch/nothing"
    [ ! -e "$scratch/nothing" ] || fail 'installed:' "$(find "$scratch/nothing")"
    ;;
fetch_content)
    # It also asks for what a subproject does not do by itself. With debugging information too
    # nothing that is installed names the folders of the build, and it works wherever it is.
    build_callers "$way" -DCORVELLA_SOURCES="$CORVELLA_SOURCES" -DCORVELLA_INSTALL=ON \
        -DCORVELLA_BUILD_TOOL=ON -DCMAKE_BUILD_TYPE=Debug
    install_from "$callers"
    ! grep -rlF -e "$CORVELLA_SOURCES" -e "$callers" "$prefix" || fail 'they name the build'
    rm -r "$callers"
    expect "corvella $CORVELLA_VERSION" "$("$prefix/bin/corvella" -version)"
    build_callers_of_package
    ;;
esac

IFS=. read -r major minor patch <<<"$CORVELLA_VERSION"
number=$(printf '%#08x' $((major << 16 | minor << 8 | patch)))
expect 'abort_caller 7' "$("$callers/abort_caller")"
expect $'verbose\nverbose\n1-jan-2000' "$("$callers/support_caller" -vv)"
expect "$CORVELLA_VERSION $CORVELLA_VERSION $number" "$("$callers/version_caller")"
expect '-1 Protocol should be HTTP, not FTP' "$("$callers/web_caller")"
"$callers/published_interface"
