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

# scratch_file: creates an empty temporary file and prints its name.
scratch_file() {
    mktemp "${TMPDIR:-/tmp}/corvella.XXXXXX"
}

# processors: prints how many processors are online.
processors() {
    getconf _NPROCESSORS_ONLN 2>/dev/null || sysctl -n hw.ncpu 2>/dev/null || echo 2
}

# missing_packages PACKAGE...: prints the Debian packages that are not installed.
missing_packages() {
    local package
    for package in "$@"; do
        if [ "$(dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null)" != installed ]; then
            printf '%s ' "$package"
        fi
    done
}

# install_packages PACKAGE...: installs the Debian packages that are missing, as root or through
# sudo. Fails on another system and without those rights. The servers among the packages are not
# started: the tests start their own.
install_packages() {
    local missing as_root=env
    command -v dpkg-query >/dev/null && command -v apt-get >/dev/null || return 1
    missing=$(missing_packages "$@")
    [ -n "$missing" ] || return 0
    if [ "$(id -u)" != 0 ]; then
        command -v sudo >/dev/null || return 1
        as_root=sudo
    fi
    say "installing $missing"
    # shellcheck disable=SC2086 # the names are words
    "$as_root" bash -s -- $missing <<'INSTALL'
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

# commands_of PACKAGE: prints the commands that serve instead of a Debian package; any one is
# enough. Prints nothing for a package that has no command.
commands_of() {
    case $1 in
    g++) echo "${CXX-} c++ g++ clang++" ;;
    clang) echo clang++ ;;
    ninja-build) echo ninja make ;;
    nginx-light) echo nginx ;;
    php-cli) echo php ;;
    binutils) echo strip ;;
    g++-multilib | googletest | dpkg-dev | locales | lib*) ;;
    *) echo "$1" ;;
    esac
}

# has_command_of PACKAGE: whether one of its commands works. A Mac without developer tools has a c++
# that only offers to install them.
has_command_of() {
    local command commands
    commands=$(commands_of "$1")
    [ -n "$commands" ] || return 0
    for command in $commands; do
        command -v "$command" >/dev/null || continue
        [ "$1" != g++ ] || "$command" --version >/dev/null 2>&1 || continue
        return 0
    done
    return 1
}

# lacking PACKAGE...: prints those whose commands are missing.
lacking() {
    local package
    for package in "$@"; do
        has_command_of "$package" || printf '%s ' "$package"
    done
}

# advice PACKAGE...: prints how to get them on this system.
advice() {
    local package names='' compiler=''
    if [ "$(uname -s)" != Darwin ]; then
        echo "install them; their Debian packages are: $*"
        return
    fi
    for package in "$@"; do
        case $package in
        g++ | clang) compiler='"xcode-select --install" installs the compiler and make' ;;
        ninja-build) names="$names ninja" ;;
        clang-format | clang-tidy) names="$names llvm" ;;
        nginx-light) names="$names nginx" ;;
        php-cli) names="$names php" ;;
        *) names="$names $package" ;;
        esac
    done
    [ -z "$names" ] ||
        names="\"brew install$names\" (Homebrew) or \"sudo port install$names\" (MacPorts)"
    echo "$compiler${compiler:+${names:+; }}$names"
}

# need_packages PACKAGE...: installs the Debian packages where that is possible. Elsewhere their
# commands have to be on PATH.
need_packages() {
    local lacking
    install_packages "$@" || true
    lacking=$(lacking "$@")
    # shellcheck disable=SC2086 # the names are words
    [ -z "$lacking" ] || fail "not found: ${lacking% }; $(advice $lacking)"
}

# want_packages PACKAGE...: the same, but goes on without those that it cannot get.
want_packages() {
    local lacking
    install_packages "$@" || true
    lacking=$(lacking "$@")
    # shellcheck disable=SC2086 # the names are words
    [ -z "$lacking" ] || say "going on without ${lacking% }; $(advice $lacking)"
}

# configure PRESET: with ninja where it is installed, otherwise with make.
configure() {
    local generator=Ninja folder=build/$1
    command -v ninja >/dev/null || generator='Unix Makefiles'
    if [ -f "$folder/CMakeCache.txt" ] &&
        ! grep -qx "CMAKE_GENERATOR:INTERNAL=$generator" "$folder/CMakeCache.txt"; then
        rm -rf "$folder/CMakeCache.txt" "$folder/CMakeFiles"
    fi
    cmake --preset "$1" -G "$generator"
}

# build_preset PRESET OPTION...: configures and builds it.
build_preset() {
    local preset=$1
    shift
    quietly configure "$preset" && quietly cmake --build --preset "$preset" \
        --parallel "$(processors)" "$@"
}

# within SECONDS COMMAND...: runs it, and ends it if it takes longer.
within() {
    local seconds=$1 command watch status=0
    shift
    "$@" &
    command=$!
    (
        for ((; seconds > 0; --seconds)); do
            sleep 1
            kill -0 "$command" 2>/dev/null || exit 0
        done
        kill "$command"
    ) >/dev/null 2>&1 &
    watch=$!
    wait "$command" || status=$?
    kill "$watch" 2>/dev/null || true
    return "$status"
}

# quietly COMMAND...: runs it and shows its output only when it fails.
quietly() {
    local log
    log=$(scratch_file)
    if "$@" >"$log" 2>&1; then
        rm -f "$log"
        return 0
    fi
    cat "$log" >&2
    rm -f "$log"
    return 1
}
