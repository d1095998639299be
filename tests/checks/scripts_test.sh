#!/usr/bin/env bash
# The shell scripts have no finding of shellcheck, and the Python ones can be compiled.
#   scripts_test.sh ROOT
set -euo pipefail
cd "$1"
mapfile -t scripts < <(find . \( -path ./build -o -path ./.git -o -path ./fuzz/corpus \) -prune -o \
    -type f -print0 | xargs -0 grep -lE -m1 '^#!.*\b(ba)?sh\b' | sort)
[ "${#scripts[@]}" -gt 3 ]
shellcheck -x -P SCRIPTDIR "${scripts[@]}" scripts/common.sh

find . \( -path ./build -o -path ./.git \) -prune -o -name '*.py' -print0 |
    xargs -0 python3 -c '
import sys
for path in sys.argv[1:]:
    with open(path, encoding="utf-8") as file:
        compile(file.read(), path, "exec")'
