#!/usr/bin/env bash
# The scripts keep to what bash 3.2 and the BSD tools have.
#   portable_test.sh SOURCE_DIR
# Left out are those that only work on Debian, and those that only Linux runs.
set -euo pipefail
cd "$1"

# What each pattern matches is missing from bash 3.2 or a BSD tool, or differs there.
patterns=(
    # bash
    '(mapfile|readarray|coproc)[[:space:]]'
    '(declare|local|typeset)[[:space:]]+-[a-zA-Z]*[An]'
    '\$\{[a-zA-Z_]+(\^|,|@[A-Z])'
    '\$\{[a-zA-Z_]+\[-[0-9]'
    '(^|[^|])\|&|&>>'
    '(^|[;&|[:space:]])wait[[:space:]]+-n'
    '\$\{?(BASHPID|EPOCHSECONDS|EPOCHREALTIME)'
    'shopt -s (globstar|lastpipe|inherit_errexit)'
    '\{[0-9]+\.\.[0-9]+\.\.[0-9]+\}'
    'printf[[:space:]]+.?%\('
    '[[:space:]]-v[[:space:]]+[a-zA-Z_]+[[:space:]]*\]'
    # tools
    '(^|[|;&(]|do |then )[[:space:]]*(nproc|timeout|realpath|tac|shuf|numfmt)([[:space:])]|$)'
    'stat[[:space:]]+(-c|--format|--printf)'
    'readlink[[:space:]]+-[a-z]*[fem]'
    'find[[:space:]].*-(executable|printf|readable)'
    'sed[[:space:]]+(-[a-zA-Z]+[[:space:]]+)*(-i|--in-place)'
    'sed[[:space:]]+-[nr]*r'
    'grep[[:space:]]+-[a-zA-Z]*P'
    'xargs[[:space:]]+(-[^[:space:]]+[[:space:]]+)*(-r|-d|--no-run-if-empty)[[:space:]]'
    'sort[[:space:]]+-[a-zA-Z]*V'
    'date[[:space:]]+(-d|--date|-I)'
    '(cp|install)[[:space:]]+(-a|-D|--parents)'
    '(head|tail)[[:space:]].*(-n|-c)[[:space:]]*-[0-9]+[[:space:]]*[|)]'
    'mktemp([[:space:]]+-d)?[[:space:]]*\)'
    'ln[[:space:]]+-[a-z]*r'
    '\[\[?[[:space:]].*\\[bw<>]'
)

# Prints the scripts that have to be portable.
portable_scripts() {
    local file first
    find . -path ./.git -prune -o -path ./build -prune -o -path ./.ci -prune -o -type f -print |
        while IFS= read -r file; do
            case $file in
            */portable_test.sh | */debian_test.sh) continue ;;
            esac
            IFS= read -r first <"$file" 2>/dev/null || continue
            case $first in
            '#!'*bash | '#!'*/sh | '# shellcheck shell='*) echo "$file" ;;
            esac
        done
}

# Prints the lines of the given files that the patterns match, comments left out.
complaints_about() {
    local pattern
    for pattern in "${patterns[@]}"; do
        grep -nE -e "$pattern" /dev/null "$@" | grep -vE '^[^:]*:[0-9]+:[[:space:]]*#' || true
    done
}

# Prints the uses of an array that may be empty, which bash before 4.4 refuses under "set -u": one
# that begins as "()" and whose size the file does not check.
empty_arrays() {
    local file name
    for file in "$@"; do
        sed -nE 's/^[[:space:]]*(local )?([a-z_]+)=\(("\$@")?\)$/\2/p' "$file" |
            while read -r name; do
                if grep -qF -e "\"\${${name}[@]}\"" "$file" &&
                    ! grep -qF -e "\${#${name}[@]}" -e "${name}+=(" "$file"; then
                    echo "$file: \$$name may be empty"
                fi
            done
    done
}

scripts=()
while IFS= read -r file; do
    scripts+=("$file")
done < <(portable_scripts)
[ ${#scripts[@]} -gt 10 ] || { echo 'there are no scripts'; exit 1; }
found=$(complaints_about "${scripts[@]}" && empty_arrays "${scripts[@]}")
[ -z "$found" ] || { printf '%s\n' "$found"; exit 1; }

# Each pattern finds what it is for.
sample=$(mktemp "${TMPDIR:-/tmp}/corvella.XXXXXX")
trap 'rm -f "$sample"' EXIT
while IFS= read -r line; do
    printf '%s\n' "$line" >"$sample"
    [ -n "$(complaints_about "$sample" && empty_arrays "$sample")" ] ||
        { echo "not noticed: $line"; exit 1; }
done <<'LINES'
mapfile -t lines <file
local -A table
echo "${name^^}"
echo "${name,,}"
echo "${list[-1]}"
make |& tee log
wait -n
echo $EPOCHSECONDS
shopt -s globstar
for i in {1..9..2}; do
jobs=$(nproc)
timeout 5 command
stat -c %s file
readlink -f file
find . -type f -executable
sed -i 's/a/b/' file
grep -oP 'a' file
xargs -r rm
sort -V
date -d yesterday
cp -a one two
scratch=$(mktemp -d)
LINES
# shellcheck disable=SC2016 # the text of a script
printf '%s\n' 'words=()' 'echo "${words[@]}"' >"$sample"
[ -n "$(empty_arrays "$sample")" ] || { echo 'an empty array is not noticed'; exit 1; }
