#!/usr/bin/env bash
# Whatever tells the version tells that of the build. The tests of callers see to the header and to
# find_package, those of the installed files and packages to their names.
set -euo pipefail
# shellcheck source=common.sh
. "$(dirname "$0")/common.sh"

install_from "$CORVELLA_BUILD"
expect "$CORVELLA_VERSION" "$(PKG_CONFIG_PATH=$(dirname "$(find "$prefix" -name corvella.pc)") \
    pkg-config --modversion corvella)"
expect "corvella $CORVELLA_VERSION" "$("$prefix/bin/corvella" -version)"

# The sentence of a manual page that has its version.
for section in 1 3; do
    [ -e "$CORVELLA_SOURCES/docs/man/corvella.$section.in" ] || continue
    page=$(find "$prefix" -name "corvella.$section")
    [ -n "$page" ] || fail "no manual page of section $section is installed"
    expect "This page is that of version $CORVELLA_VERSION." "$(grep -F ' of version ' "$page")"
done

# The newest heading of the change log with a version in it.
changes=$CORVELLA_SOURCES/CHANGELOG.md
if [ -e "$changes" ]; then
    newest=$(grep -m 1 -E '^## .*[0-9]+\.[0-9]+\.[0-9]+' "$changes") || fail 'no heading'
    expect "$CORVELLA_VERSION" "$(grep -oE '[0-9]+\.[0-9]+\.[0-9]+' <<<"$newest" | head -n 1)"
fi
