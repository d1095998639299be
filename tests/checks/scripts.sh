#!/usr/bin/env bash
# Every shell script passes shellcheck, and can be run. scripts.sh TREE
set -euo pipefail
cd "$1"

scripts=()
while IFS= read -r -d '' file; do
    IFS= read -r first <"$file" || continue
    case $first in
    '#!'*/sh | '#!'*/bash | '#!'*' sh' | '#!'*' bash')
        [ -x "$file" ] || [[ $file == ./tests/* ]] || { echo "$file cannot be run"; exit 1; }
        scripts+=("$file")
        ;;
    '# shellcheck shell='*) scripts+=("$file") ;;
    esac
done < <(find . -path ./.git -prune -o -path ./build -prune -o -type f -print0)
[ ${#scripts[@]} -gt 0 ] || { echo 'there is no script'; exit 1; }
shellcheck --external-sources --source-path=SCRIPTDIR --norc "${scripts[@]}"
