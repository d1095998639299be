# shellcheck shell=bash
# What run and test share. Read by them, not run.

# say WORDS...: tells what the script does.
say() {
    printf '==> %s\n' "$*" >&2
}

# fail WORDS...: tells why it cannot go on, and ends.
fail() {
    printf '%s: %s\n' "${0##*/}" "$*" >&2
    exit 1
}

# missing_packages PACKAGE...: prints those that are not installed.
missing_packages() {
    local package
    for package in "$@"; do
        if [ "$(dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null)" != installed ]; then
            printf '%s ' "$package"
        fi
    done
}

# need_packages PACKAGE...: installs the Debian packages that are missing, as root or through sudo.
# No server among them is started: the tests start their own.
need_packages() {
    command -v dpkg-query >/dev/null || fail "this is no Debian system; it needs what these" \
        "packages hold: $*"
    local missing
    read -r -a missing <<<"$(missing_packages "$@")"
    [ ${#missing[@]} -gt 0 ] || return 0
    local root=()
    if [ "$(id -u)" != 0 ]; then
        command -v sudo >/dev/null || fail "missing packages: ${missing[*]} (install" \
            "them as root)"
        root=(sudo)
    fi
    say "installing ${missing[*]}"
    "${root[@]}" bash -s -- "${missing[@]}" <<'INSTALL' || fail "could not install: ${missing[*]}"
set -e
export DEBIAN_FRONTEND=noninteractive
policy=/usr/sbin/policy-rc.d
if [ ! -e "$policy" ]; then
    trap 'rm -f "$policy"' EXIT
    printf '#!/bin/sh\nexit 101\n' >"$policy"
    chmod 755 "$policy"
fi
{
    apt-get update -qq
    apt-get install -y -qq --no-install-recommends "$@"
} >&2 </dev/null
INSTALL
}

# quietly COMMAND...: runs it and shows its output only when it fails.
quietly() {
    local log
    log=$(mktemp)
    if "$@" >"$log" 2>&1; then
        rm -f "$log"
        return 0
    fi
    cat "$log" >&2
    rm -f "$log"
    return 1
}
