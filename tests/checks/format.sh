#!/usr/bin/env bash
# Every file of C++ is as clang-format leaves it. format.sh TREE
# Its versions differ in what they leave, so that only the one of the configuration counts.
set -euo pipefail
cd "$1"
wanted=14

command -v clang-format >/dev/null || { echo 'there is no clang-format'; exit 1; }
version=$(clang-format --version | grep -oE 'version [0-9]+')
if [ "$version" != "version $wanted" ]; then
    echo "skipped: clang-format is of $version, and $wanted is what the tree is formatted with"
    exit 77
fi
find . -path ./.git -prune -o -path ./build -prune -o \( -name '*.cpp' -o -name '*.h' \) -print0 |
    xargs -0 clang-format --dry-run --Werror --style=file
