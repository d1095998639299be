#!/usr/bin/env bash
# The built program has what CORVELLA_HARDENING promises, and is small.
#   hardening_test.sh PROGRAM BUILD_TYPE
set -euo pipefail
program=$1 build_type=$2
most_bytes=$((250 * 1024))
scratch=$(mktemp -d "${TMPDIR:-/tmp}/corvella.XXXXXX")
trap 'rm -rf "$scratch"' EXIT
export LC_ALL=C
failures=0

# expect WHAT PATTERN COMMAND...: a line of the command's output is like the pattern.
expect() {
    local what=$1 pattern=$2
    shift 2
    "$@" >"$scratch/facts" 2>&1 || { echo "cannot be asked: $*"; exit 1; }
    grep -Eq "$pattern" "$scratch/facts" || { echo "not so: $what"; failures=1; }
}

expect 'loaded anywhere' '^ *Type: +DYN' readelf -hW "$program"
expect 'named a position-independent program' '\(FLAGS_1\).*\bPIE\b' readelf -dW "$program"
expect 'all symbols are bound at the start' '\bBIND_NOW\b|\bNOW\b' readelf -dW "$program"
expect 'tables of addresses read only' '^ *GNU_RELRO ' readelf -lW "$program"
expect 'the stack is not executable' '^ *GNU_STACK .* RW +0x' readelf -lW "$program"
expect 'canaries on the stack' '\b__stack_chk_fail\b' readelf --dyn-syms -W "$program"
if [ "$build_type" != Debug ]; then
    expect 'bounded calls of the C library' '\b__[a-z]+_chk\b' readelf --dyn-syms -W "$program"
fi
if readelf -hW "$program" | grep -Eq 'Machine: .*(X86-64|80386)'; then
    expect 'places to jump to are marked' '\bendbr(32|64)\b' objdump -d "$program"
fi

strip -o "$scratch/stripped" "$program"
size=$(($(wc -c <"$scratch/stripped")))
if [ "$build_type" != Debug ] && [ "$size" -ge "$most_bytes" ]; then
    echo "$size bytes, and $most_bytes are too many"
    failures=1
fi
exit "$failures"
