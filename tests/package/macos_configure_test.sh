#!/usr/bin/env bash
# The build for Mac OS X, as far as it can be seen without its compiler: the frameworks are linked
# and handed on to callers, and the shared libraries hide what the headers do not publish.
set -euo pipefail
# shellcheck source=common.sh
. "$(dirname "$0")/common.sh"

build=$scratch/build
export CMAKE_GENERATOR=Ninja
quietly cmake -S "$CORVELLA_SOURCES" -B "$build" -DCMAKE_SYSTEM_NAME=Darwin \
    -DCMAKE_CXX_COMPILER="$CORVELLA_COMPILER" -DCMAKE_INSTALL_NAME_TOOL=/bin/true \
    -DCMAKE_BUILD_TYPE=Release -DBUILD_SHARED_LIBS=ON -DBUILD_TESTING=OFF

# expect_frameworks FRAMEWORK... <TEXT: a text names these frameworks, in the order of the alphabet.
expect_frameworks() {
    expect "$(printf '%s\n' "$@")" "$(grep -oE 'framework [A-Za-z]+' | sed 's/.* //' | sort -u)"
}

# The lines of the build that make a library.
linking() {
    sed -n "/^build .*libcorvella_$1\.[0-9.]*dylib:/,/^\$/p" "$build/build.ninja"
}

# The lines of the build that compile a library's sources.
compiling() {
    sed -n "/^build $1\/CMakeFiles.*\.o:/,/^\$/p" "$build/build.ninja"
}

expect_frameworks CoreFoundation CoreServices SystemConfiguration <"$build/corvella.pc"
# shellcheck disable=SC2016 # pkg-config knows that variable
grep -q '^Libs: -L${libdir} -lcorvella_platform -lcorvella_web -lcorvella_support ' \
    "$build/corvella.pc" || fail "$(cat "$build/corvella.pc")"
expect_frameworks CoreFoundation CoreServices SystemConfiguration \
    <"$(find "$build" -name corvella-targets.cmake)"
linking support | expect_frameworks CoreServices
linking web | expect_frameworks CoreFoundation CoreServices SystemConfiguration
linking platform | expect_frameworks CoreFoundation CoreServices

major=${CORVELLA_VERSION%%.*}
for library in support web platform; do
    compiling $library >"$scratch/compiling"
    grep -q -e '-fvisibility=hidden ' "$scratch/compiling" || fail "$library: not hidden"
    linking $library | grep -qF "libcorvella_$library.$major.dylib" || fail "$library: no version"
done

# Install names and search paths do not depend on sw_vers, which is not there.
for library in support web platform; do
    linking $library | grep -qx '  INSTALLNAME_DIR = @rpath/' || fail "$library: no install name"
done
linking web | grep -qF -- "-Wl,-rpath,$build/support" || fail 'web: no search path'
grep -qF '@loader_path' "$build/cmake_install.cmake" || fail 'web: none when installed'
sed -n '/^build tool\/corvella:/,/^$/p' "$build/build.ninja" |
    grep -qE -- '-Wl,-pie|-Xlinker -pie' ||
    fail 'the program can be loaded at one place only'

# cpack makes a tarball and an installer package of the same components as on Debian.
packages=$build/CPackConfig.cmake
grep -qxF 'set(CPACK_GENERATOR "TGZ;productbuild")' "$packages" || fail 'other packages'
expect "$(grep '^set(CPACK_COMPONENTS_ALL ' "$CORVELLA_SHARED_BUILD/CPackConfig.cmake")" \
    "$(grep '^set(CPACK_COMPONENTS_ALL ' "$packages")"
for component in LIBRARY DEVELOPMENT PROGRAM; do
    grep -q "^ *set(CPACK_COMPONENT_CORVELLA_${component}_DISPLAY_NAME " "$packages" ||
        fail "no choice: $component"
done
for kind in LICENSE WELCOME README; do
    file=$(sed -n "s/^set(CPACK_RESOURCE_FILE_$kind \"\(.*\)\")/\1/p" "$packages")
    [[ $file == *.txt && -s $file ]] || fail "the installer has no $kind"
done

# With tests: what the linker cannot do there is left out, and the report says so.
tests=$scratch/tests
quietly cmake -S "$CORVELLA_SOURCES" -B "$tests" -DCMAKE_SYSTEM_NAME=Darwin \
    -DCMAKE_CXX_COMPILER="$CORVELLA_COMPILER" -DCMAKE_INSTALL_NAME_TOOL=/bin/true
! grep -q -e '--wrap' "$tests/build.ninja" || fail 'tests need --wrap'
! grep -qE '(_linux|_glibc)\.cpp' "$tests/build.ninja" || fail 'sources for another system'
grep -q 'write_stream_bsd\.cpp' "$tests/build.ninja" || fail 'no stream of the tests'
for name in frameworks failure_loops_tests tool_faults_tests c_utils_files_faults_test \
    error_abort_test error_allocation_test error_heap_use_test error_message_writes_test \
    web_reply_text_tests web_secrets_tests web_short_sends_tests web_system_proxy_tests; do
    ctest --test-dir "$tests" -R "^$name\$" >"$scratch/report" 2>&1 || true
    grep -q "$name .*Skipped" "$scratch/report" || fail "$name:" "$(cat "$scratch/report")"
done
