#!/usr/bin/env bash
# What "cmake --install" puts into place: nothing in it names the folders of the build, and it can
# be stripped on the way.
#   installed_files_test.sh LINKAGE
# LINKAGE is static or shared.
set -euo pipefail
linkage=$1
# shellcheck source=common.sh
. "$(dirname "$0")/common.sh"

# How many files can be stripped: static libraries stay as they are.
build=$CORVELLA_STATIC_BUILD binaries=1
if [ "$linkage" = shared ]; then
    build=$CORVELLA_SHARED_BUILD binaries=3
fi

# What the binaries say of themselves, debugging information or none.
kinds() {
    find "$prefix" -type f \( -name 'lib*.so.*' -o -name corvella \) -exec file -b {} + |
        grep -oE 'with debug_info, not stripped|, stripped' | sort | uniq -c | tr -s ' '
}

install_from "$build"
expect " $binaries with debug_info, not stripped" "$(kinds)"
! grep -rlF -e "$CORVELLA_SOURCES" -e "$build" "$prefix" || fail 'they name the build'
for file in man/man1/corvella.1 man/man3/corvella.3 bash-completion/completions/corvella \
    zsh/site-functions/_corvella doc/corvella/README.md doc/corvella/docs/deliberate.md; do
    [ -s "$prefix/share/$file" ] || fail "not installed: share/$file"
done
rm -r "$prefix"

install_from "$build" --strip
expect " $binaries , stripped" "$(kinds)"
libraries=$(dirname "$(find "$prefix" -name 'libcorvella_web.*' | head -n 1)")
expect "corvella $CORVELLA_VERSION" "$(LD_LIBRARY_PATH=$libraries "$prefix/bin/corvella" -version)"
compile_with_pkg_config "$prefix" version_caller
LD_LIBRARY_PATH=$libraries quietly "$scratch/version_caller"
[ "$linkage" = shared ] || exit 0

# The names of the libraries: the version, behind the link that programs ask for, behind the link
# that callers are built with.
major=${CORVELLA_VERSION%%.*}
for library in support web; do
    name=libcorvella_$library.so
    expect "$name.$major" "$(readlink "$libraries/$name")"
    expect "$name.$CORVELLA_VERSION" "$(readlink "$libraries/$name.$major")"
    objdump -p "$libraries/$name" | grep -qE "SONAME +$name\.$major\$" || fail "$name has no SONAME"
done
