#!/usr/bin/env bash
# The Debian packages: each installed file is in one of them, lintian has no complaint, they can be
# installed, and what they hold works from where it is unpacked.
set -euo pipefail
# shellcheck source=common.sh
. "$(dirname "$0")/common.sh"

library=libcorvella${CORVELLA_VERSION%%.*}
quietly cpack --config "$CORVELLA_SHARED_BUILD/CPackConfig.cmake" -B "$scratch/packages"
packages=("$scratch/packages"/*.deb)
names=$(for package in "${packages[@]}"; do dpkg-deb -f "$package" Package; done)
expect "$(printf '%s\n' corvella libcorvella-dev "$library")" "$(LC_ALL=C sort <<<"$names")"

# field PACKAGE FIELD
field() {
    dpkg-deb -f "$scratch/packages/$1"_*.deb "$2"
}

# expect_depends PACKAGE PATTERN...: each of the patterns is one of its dependencies.
expect_depends() {
    local depends pattern
    depends=$(field "$1" Depends | sed 's/, /\n/g')
    for pattern in "${@:2}"; do
        grep -qxE -e "$pattern" <<<"$depends" || fail "$1 does not depend on $pattern:" "$depends"
    done
}

for name in $names; do
    expect "$CORVELLA_VERSION-1" "$(field "$name" Version)"
    expect 'Morvane <support@morvane.example>' "$(field "$name" Maintainer)"
done
version=${CORVELLA_VERSION//./\\.}
expect_depends corvella "$library \(>= $version\)" 'libc6 .*' 'libstdc\+\+6 .*'
expect_depends libcorvella-dev "$library \(= $version-1\)"
expect_depends "$library" 'libc6 .*' 'libstdc\+\+6 .*'

# Whatever warrants no complaint is overridden beside the packages; until there is a manual page,
# lintian misses it.
suppress=()
[ -e "$CORVELLA_SOURCES/docs/man/corvella.1.in" ] || suppress=(--suppress-tags no-manual-page)
quietly lintian --allow-root --fail-on error,warning "${suppress[@]}" "${packages[@]}"

# Installs and removes them in a system of their own below the scratch folder, where there is
# nothing that they depend on; with root's rights only. The cache of this system's dynamic linker
# stays as it is.
install_and_remove() {
    local root=$scratch/system
    mkdir -p "$root/var/lib/dpkg"/{info,updates,triggers} "$scratch/bin"
    touch "$root/var/lib/dpkg/status"
    ln -s /bin/true "$scratch/bin/ldconfig"
    local dpkg=(env PATH="$scratch/bin:$PATH" dpkg --root="$root" --log="$scratch/dpkg.log"
        --force-script-chrootless --force-depends)
    quietly "${dpkg[@]}" -i "${packages[@]}"
    quietly "${dpkg[@]}" --verify
    [ ! -s "$scratch/log" ] || fail "$(cat "$scratch/log")"
    # shellcheck disable=SC2086 # the names are words
    quietly "${dpkg[@]}" --purge $names
    find "$root" -type f ! -path '*/var/lib/dpkg/*' >"$scratch/left"
    [ ! -s "$scratch/left" ] || fail 'left behind:' "$(cat "$scratch/left")"
}
[ "$(id -u)" != 0 ] || install_and_remove

# As the package tools would do it here, without doing it.
quietly dpkg --force-not-root --dry-run -i "${packages[@]}"
quietly apt-get --simulate --no-download -o Debug::NoLocking=true install "${packages[@]}"

for package in "${packages[@]}"; do
    dpkg-deb -x "$package" "$scratch/root"
    dpkg-deb -c "$package" | awk '!/^d/ { print $6 }' >>"$scratch/all"
done

# Each installed file once; with them only what Debian wants, and manual pages are compressed.
sed -E -n '/share\/(doc\/[^/]+\/(copyright|changelog.*)|lintian\/.*)$/!s:^\./usr::p' \
    "$scratch/all" | LC_ALL=C sort >"$scratch/packaged"
install_from "$CORVELLA_SHARED_BUILD"
(cd "$prefix" && find . ! -type d) | sed -E 's:^\.::; s:(/share/man/.*):\1.gz:' |
    LC_ALL=C sort >"$scratch/installed"
diff "$scratch/installed" "$scratch/packaged" >"$scratch/difference" ||
    fail 'installed < and packaged >:' "$(cat "$scratch/difference")"

LD_LIBRARY_PATH=$(dirname "$(find "$scratch/root" -name "libcorvella_web.so")")
export LD_LIBRARY_PATH
expect "corvella $CORVELLA_VERSION" "$("$scratch/root/usr/bin/corvella" -version)"
compile_with_pkg_config "$scratch/root" abort_caller
expect 'abort_caller 7' "$("$scratch/abort_caller")"
