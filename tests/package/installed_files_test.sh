#!/usr/bin/env bash
# What "cmake --install" puts into place: nothing in it names the folders of the build, and it can
# be stripped on the way.
set -euo pipefail
# shellcheck source=common.sh
. "$(dirname "$0")/common.sh"

# What the binaries say of themselves, debugging information or none.
kinds() {
    find "$prefix" -type f \( -name 'lib*.so.*' -o -name corvella \) -exec file -b {} + |
        grep -oE 'with debug_info, not stripped|, stripped' | sort | uniq -c | tr -s ' '
}

# The static libraries are those of a developing build, which keep the folders for the debugger.
install_from "$CORVELLA_BUILD"
! grep -rlIF -e "$CORVELLA_SOURCES" -e "$CORVELLA_BUILD" "$prefix" || fail 'they name the build'
rm -r "$prefix"

install_from "$CORVELLA_SHARED_BUILD"
expect ' 3 with debug_info, not stripped' "$(kinds)"
! grep -rlF -e "$CORVELLA_SOURCES" -e "$CORVELLA_SHARED_BUILD" "$prefix" ||
    fail 'they name the build'
rm -r "$prefix"

install_from "$CORVELLA_SHARED_BUILD" --strip
expect ' 3 , stripped' "$(kinds)"
libraries=$(dirname "$(find "$prefix" -name libcorvella_web.so)")
expect "corvella $CORVELLA_VERSION" "$(LD_LIBRARY_PATH=$libraries "$prefix/bin/corvella" -version)"

# The names of the libraries: the version, behind the link that programs ask for, behind the link
# that callers are built with.
major=${CORVELLA_VERSION%%.*}
for library in support web; do
    name=libcorvella_$library.so
    expect "$name.$major" "$(readlink "$libraries/$name")"
    expect "$name.$CORVELLA_VERSION" "$(readlink "$libraries/$name.$major")"
    objdump -p "$libraries/$name" | grep -qE "SONAME +$name\.$major\$" || fail "$name has no SONAME"
done
