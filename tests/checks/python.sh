#!/usr/bin/env bash
# Every Python script compiles, and pyflakes finds nothing in it. python.sh TREE
set -euo pipefail
cd "$1"
scratch=$(mktemp -d "${TMPDIR:-/tmp}/corvella.XXXXXX")
trap 'rm -rf "$scratch"' EXIT
unset PYTHONDONTWRITEBYTECODE
export PYTHONPYCACHEPREFIX=$scratch

scripts=()
while IFS= read -r -d '' script; do
    scripts+=("$script")
done < <(find . -path ./.git -prune -o -path ./build -prune -o -name '*.py' -print0)
[ ${#scripts[@]} -gt 0 ] || { echo 'there is no script'; exit 1; }
python3 -m py_compile "${scripts[@]}"
pyflakes3 "${scripts[@]}"
