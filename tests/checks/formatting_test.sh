#!/usr/bin/env bash
# All C++ is as clang-format leaves it. Other versions than that of the tree's maker differ in small
# ways: with those the test is skipped.
#   formatting_test.sh ROOT
set -euo pipefail
version=14
if ! clang-format --version | grep -q "version $version\."; then
    echo "clang-format $version is not here: $(clang-format --version)"
    exit 77
fi
cd "$1"
find support web platform tool examples bench tests fuzz \( -name '*.cpp' -o -name '*.h' \) \
    -print0 | xargs -0 clang-format --dry-run -Werror
