#!/usr/bin/env bash
# The usage text, the parser, the manual page and the completions of bash and zsh know the same
# commands and options, and what tells of the exit statuses tells of the same.
#   lists_test.sh PROGRAM LISTS_PROGRAM LISTS_DIR SOURCE_DIR
set -euo pipefail
program=$1 lists_program=$2 lists=$3 sources=$4
scratch=$(mktemp -d "${TMPDIR:-/tmp}/corvella.XXXXXX")
trap 'rm -rf "$scratch"' EXIT

fail() {
    printf '%s\n' "$*" >&2
    exit 1
}

# expect_same WHAT FILE FILE: both have the same lines, in any order, and there are some.
expect_same() {
    [ -s "$2" ] || fail "$1: there are none"
    diff <(sort -u "$2") <(sort -u "$3") || fail "$1 differ: $2 $3"
}

# The build keeps what the program that makes the lists prints.
for kind in manual:corvella_options.mdoc bash:bash/corvella zsh:zsh/_corvella; do
    "$lists_program" "${kind%:*}" | diff - "$lists/${kind#*:}" || fail "another list: $kind"
done
! "$lists_program" nonsense 2>/dev/null || fail 'there is a list of nonsense'

cd "$scratch"
"$program" -help >help

# The commands, one a line.
awk '/^Commands:/ { on = 1; next } /^$/ { on = 0 } on { print $1 }' help >help.commands
read -r -a commands <<<"$(tr '\n' ' ' <help.commands)"

# "COMMAND -option", as the headings of a usage text or a manual page tell. Reads lines "= heading"
# and "-option".
options_of_commands() {
    awk -v all="${commands[*]}" '
        /^= General options/ { count = split(all, names, " "); next }
        /^= Options without a command/ { count = 0; next }
        /^= Options of / {
            gsub(/^= Options of |,| and/, "")
            count = split($0, names, " ")
        }
        /^-/ { for (i = 1; i <= count; ++i) print names[i], $1 }'
}
sed -nE 's/^(Options .*|General options):$/= \1/p; s/^  (-[a-z-]+).*/\1/p' help |
    options_of_commands >help.options

# The manual page says the same.
sed -nE 's/^\.It Cm ([a-z]+).*/\1/p' "$lists/corvella.1" >manual.commands
sed -nE 's/^\.Ss (Options .*|General options)$/= \1/p; s/^\.It Fl ([a-z-]+).*/-\1/p' \
    "$lists/corvella.1" | options_of_commands >manual.options
expect_same commands help.commands manual.commands
expect_same options help.options manual.options
! grep -n '@[A-Z_]*@' "$lists/corvella.1" || fail 'the manual page has an empty place'

# The program: it knows every command and option, and refuses the options of other commands. What is
# given to each is no URL of the web, so that nothing is requested.
sed 's/.* //' help.options | sort -u >names
for command in "${commands[@]}"; do
    while read -r option; do
        said=$("$program" "$command" "$option" 127.0.0.1:1 2>&1 || true)
        case $said in
        *'There is no command'*) fail "the program does not know $command" ;;
        *'unknown option'* | *'ambiguous option'*) fail "the parser does not know $option" ;;
        *'does not go with'*) ;;
        *) echo "$command $option" ;;
        esac
    done <names
done >parser.options
expect_same options help.options parser.options

# Bash, as it completes without a terminal.
bash -c '
    . "$1/bash/corvella"
    completions() {
        COMP_WORDS=("$@") COMP_CWORD=$(($# - 1))
        _corvella
        printf "%s\n" "${COMPREPLY[@]}"
    }
    completions corvella "" >bash.commands
    while read -r command; do
        completions corvella "$command" - | sed "s/^/$command /"
    done <help.commands >bash.options
    cd "$1"
    while read -r words; do
        echo "$words: $(completions corvella $words | xargs)"
    done
' bash "$lists" >bash.replies <<'WORDS'
-output zsh/_c
-output = zsh/_c
open zsh/_c
up
-output = x de
-proxy-user get po
-proxy host : 80 get -out
get -version-
get -proxy h
--output zsh/_c
get --out
post --keep-
WORDS
expect_same commands help.commands bash.commands
expect_same options help.options bash.options
sed 's/ *$//' bash.replies | diff - <(cat <<'REPLIES'
-output zsh/_c: zsh/_corvella
-output = zsh/_c: zsh/_corvella
open zsh/_c: zsh/_corvella
up: update
-output = x de: describe
-proxy-user get po: post
-proxy host : 80 get -out: -output
get -version-:
get -proxy h:
--output zsh/_c: zsh/_corvella
get --out: --output
post --keep-: --keep-partial --keep-body
REPLIES
) || fail 'bash completes something else'
shellcheck "$lists/bash/corvella" || fail 'the completion of bash is not well-formed'

# Zsh: that it finds the file, and what the file hands to the functions of the completion system.
zsh -f -c '
    fpath=($1/zsh $fpath)
    autoload -Uz compinit
    compinit -D -u
    [[ $_comps[corvella] = _corvella ]] || exit 1
    _arguments() {
        print -rl -- ${${(M)@:#-[a-z]*\[*}/#/$command } >>zsh.specifications
        state=${expected_state}
        return 1
    }
    _describe() { print -rl -- ${(P)2} >zsh.described }
    _files() { print files of $command >>zsh.files }
    for command_word in ${(f)"$(<help.commands)"}; do
        words=(corvella -proxy get $command_word "") CURRENT=5 expected_state=argument
        _corvella
    done
    words=(corvella -proxy get "") CURRENT=4 expected_state=command
    _corvella
' zsh "$lists" || fail 'zsh does not find its completion'
sed 's/:.*//' zsh.described >zsh.commands
sed -nE 's/^([a-z]+ -[a-z-]+)\[.*/\1/p' zsh.specifications >zsh.options
expect_same commands help.commands zsh.commands
expect_same options help.options zsh.options
grep -qx 'files of open' zsh.files || fail 'zsh completes no file to open'
grep -q "^get -output\[.*:_files$" zsh.specifications || fail 'zsh completes no output file'

# The exit statuses: those of the program's source, the usage text, the manual page and the README.
sed -nE 's/^ *EXIT_[A-Z_]+ = ([0-9]+),.*/\1/p' "$sources/tool/exit_status.h" >enum.statuses
sed '1,/^Exit status:/d' help | sed -E 's/^ *([0-9]+)[ \t]*/\1: /' >help.statuses
awk '
    /^\.Sh / { on = /EXIT STATUS/ }
    on && /^\.It / { status = $2; getline; print status ": " $0 }
' "$lists/corvella.1" >manual.statuses
sed 's/:.*//' help.statuses >help.numbers
expect_same 'exit statuses' enum.statuses help.numbers
expect_same 'exit statuses' help.statuses manual.statuses
sed -nE 's/^\| ([0-9]+) \| (.*) \|$/\1: \2/p' "$sources/README.md" >readme.statuses
expect_same 'exit statuses' help.statuses readme.statuses
