#!/usr/bin/env bash
# The tool chain files for Mac OS X configure with a made-up SDK, and name what is missing. Nothing
# is built: that needs a real SDK and a linker for Mach-O. Status 77 without clang++.
set -euo pipefail
# shellcheck source=common.sh
. "$(dirname "$0")/common.sh"
for command in clang++ llvm-ar llvm-ranlib; do
    command -v "$command" >/dev/null || {
        echo "skipped: not installed: $command"
        exit 77
    }
done
unset CXX CORVELLA_MACOS_SDK CORVELLA_MACOS_LINKER CORVELLA_MACOS_CXX_LIBRARY
export CMAKE_GENERATOR=Ninja

sdk=$scratch/sdk library=$scratch/libc++ linker=$scratch/ld
mkdir -p "$sdk/System/Library/Frameworks" "$library/include/c++/v1" "$library/lib"
printf '#!/bin/sh\n' >"$linker"
chmod +x "$linker" "$scratch"
cp "$linker" "$scratch/install_name_tool"
PATH=$PATH:$scratch

# configure TOOLCHAIN OPTION...: leaves the folder in $build and what cmake said in $scratch/log.
configure() {
    build=$scratch/build
    rm -rf "$build"
    cmake -S "$CORVELLA_SOURCES" -B "$build" -DBUILD_TESTING=OFF -DCMAKE_BUILD_TYPE=Release \
        -DCMAKE_TOOLCHAIN_FILE="$CORVELLA_SOURCES/cmake/toolchains/$1.cmake" "${@:2}" \
        >"$scratch/log" 2>&1
}

# expect_refused TOOLCHAIN WORDS OPTION...: what cmake says has these words, whatever its line ends.
expect_refused() {
    ! configure "$1" "${@:3}" || fail "configured: $*"
    tr -s ' \n' '  ' <"$scratch/log" | grep -qF -e "$2" ||
        fail "not said: $2" "$(cat "$scratch/log")"
}

# expect_in_build TEXT...: each is in what ninja runs.
expect_in_build() {
    local text
    for text in "$@"; do
        grep -qF -e "$text" "$build/build.ninja" "$build/CMakeFiles/rules.ninja" ||
            fail "not in the build: $text"
    done
}

given=(-DCORVELLA_MACOS_SDK="$sdk" -DCORVELLA_MACOS_LINKER="$linker"
    -DCORVELLA_MACOS_CXX_LIBRARY="$library")
for row in 'macos-10.6-i386 i386 10.6' 'macos-10.6-x86_64 x86_64 10.6' 'macos-x86_64 x86_64 10.9' \
    'macos-arm64 arm64 11.0'; do
    read -r toolchain architecture oldest <<<"$row"
    for shared in OFF ON; do
        configure "$toolchain" "${given[@]}" -DBUILD_SHARED_LIBS=$shared ||
            fail "$toolchain" "$(cat "$scratch/log")"
        expect_in_build "--target=$architecture-apple-macosx" "-arch $architecture" \
            "-isysroot $sdk" "-mmacosx-version-min=$oldest" "--ld-path=$linker" \
            "-isystem $library/include/c++/v1" "$library/lib/libc++.a" '-Xlinker -pie' -fPIE
    done
    expect_in_build 'INSTALLNAME_DIR = @rpath/' "-Wl,-rpath,$build/support"
    case $toolchain in
    *10.6*) expect_in_build -U__STRICT_ANSI__ ;;
    *) ! grep -q STRICT_ANSI "$build/build.ninja" || fail "$toolchain: not strict" ;;
    esac
    case $architecture in
    i386) expect_in_build '-msse2 -mfpmath=sse' ;;
    *) ! grep -q msse2 "$build/build.ninja" || fail "$toolchain: taken for i386" ;;
    esac
done

# A newer oldest system, and the environment instead of options.
export CORVELLA_MACOS_SDK=$sdk CORVELLA_MACOS_LINKER=$linker CORVELLA_MACOS_CXX_LIBRARY=$library
configure macos-x86_64 -DCMAKE_OSX_DEPLOYMENT_TARGET=10.13 || fail "$(cat "$scratch/log")"
expect_in_build -mmacosx-version-min=10.13
unset CORVELLA_MACOS_SDK CORVELLA_MACOS_LINKER CORVELLA_MACOS_CXX_LIBRARY

expect_refused macos-10.6-i386 'CORVELLA_MACOS_SDK has to be the folder of a Mac OS X SDK' \
    "${given[1]}" "${given[2]}"
expect_refused macos-10.6-i386 "it is '$scratch/nowhere'." \
    -DCORVELLA_MACOS_SDK="$scratch/nowhere" "${given[1]}" "${given[2]}"
expect_refused macos-arm64 'CORVELLA_MACOS_LINKER has to be a linker for Mach-O' \
    "${given[0]}" "${given[2]}"
expect_refused macos-arm64 "there is no '/nowhere/ld'." \
    -DCORVELLA_MACOS_LINKER=/nowhere/ld "${given[0]}" "${given[2]}"
expect_refused macos-10.6-x86_64 'CORVELLA_MACOS_CXX_LIBRARY has to be a folder with libc++' \
    "${given[0]}" "${given[1]}"

# A newer SDK has its own.
mkdir -p "$sdk/usr/include/c++/v1"
configure macos-arm64 "${given[0]}" "${given[1]}" || fail "$(cat "$scratch/log")"
expect_in_build -stdlib=libc++

# Each file is a preset's.
for file in "$CORVELLA_SOURCES"/cmake/toolchains/macos-*.cmake; do
    name=${file##*/}
    grep -qF "cmake/toolchains/$name\"" "$CORVELLA_SOURCES/CMakePresets.json" ||
        fail "no preset: $name"
    cmake -S "$CORVELLA_SOURCES" --list-presets | grep -qF "\"${name%.cmake}\"" || fail "$name"
done
