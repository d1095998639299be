#!/usr/bin/env bash
# cppcheck finds nothing in any file of C++. cppcheck.sh TREE
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
cd "$1"
folders=()
for folder in support web platform tool examples tests fuzz; do
    [ ! -d "$folder" ] || folders+=("$folder")
done
cppcheck --quiet --error-exitcode=1 -j "$(getconf _NPROCESSORS_ONLN)" --std=c++17 \
    --library=googletest -I . \
    --enable=warning,style,performance,portability --inline-suppr \
    --suppressions-list="$here/cppcheck_suppressions.txt" "${folders[@]}"
