#!/usr/bin/env bash
# Runs the scripts run and test as on a system that is not Debian: without its package tools, ninja,
# php and the GNU tools that a Mac lacks.
#   elsewhere_test.sh SOURCE_DIR BUILD_DIR
set -euo pipefail
# shellcheck source=common.sh
. "$(dirname "$0")/common.sh"

# make_path NAME PATTERN: makes a folder of all commands of this machine, except those of the
# pattern, in $scratch/NAME.
# shellcheck disable=SC2016 # for the shell that is called
make_path() {
    local folder file
    mkdir "$scratch/$1"
    while IFS= read -r -d : folder; do
        for file in "$folder"/*; do
            if ! [[ ${file##*/} =~ ^($2)$ ]] && [ ! -e "$scratch/$1/${file##*/}" ]; then
                printf '%s\0' "$file"
            fi
        done | xargs -0 sh -c '[ $# = 0 ] || ln -s "$@" "$0"' "$scratch/$1"
    done <<<"$PATH:"
}

absent='apt.*|dpkg.*|sudo|ninja.*|php.*|nproc|timeout|stat|readlink|realpath|tac|shuf'
make_path elsewhere "$absent"
for command in nproc apt-get dpkg-query ninja timeout php; do
    [ ! -e "$scratch/elsewhere/$command" ] || fail "$command is there"
done
unset CMAKE_GENERATOR

# The main job, built by make and shown against our own stand-in of the service.
try 0 env PATH="$scratch/elsewhere" "$copy/run"
for text in 'Corvella 5.2 is available; you have 5.1.' 'Version: 5.2' Download \
    http://www.morvane.example/download.html; do
    expect_in out "$text"
done
[ -e "$copy/build/release/Makefile" ] || fail 'make has built nothing'
expect_nothing_left

# Ninja comes later: the folder is configured again.
if command -v ninja >/dev/null; then
    make_path ninja "apt.*|dpkg.*|sudo|php.*"
    try 0 env PATH="$scratch/ninja" "$copy/run" -version
    [ -e "$copy/build/release/build.ninja" ] || fail 'ninja has built nothing'
fi

try 0 env PATH="$scratch/elsewhere" "$copy/test" help
expect_in out '    default '

# What is missing is named, on a Mac in its own words.
cat >"$scratch/uname" <<'UNAME'
#!/bin/sh
echo Darwin
UNAME
chmod +x "$scratch/uname"
make_path bare "$absent|cmake|make|gmake|c[+][+].*|.*g[+][+].*|clang.*|uname"
try 1 env -u CXX PATH="$scratch/bare" "$copy/run"
expect_in err 'not found: g++ cmake ninja-build; install them; their Debian packages are: '
cp "$scratch/uname" "$scratch/bare/uname"
try 1 env -u CXX PATH="$scratch/bare" "$copy/run"
expect_in err '"xcode-select --install" installs the compiler and make'
expect_in err '"brew install cmake ninja" (Homebrew) or "sudo port install cmake ninja" (MacPorts)'
try 1 env -u CXX PATH="$scratch/bare" "$copy/test" default
expect_in err 'not found: g++ cmake ninja-build; '
