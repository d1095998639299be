#!/usr/bin/env bash
# Every function that takes a printf format is declared so that the compiler checks it: a right call
# compiles, and a wrong one does not.
set -euo pipefail
# shellcheck source=common.sh
. "$(dirname "$0")/common.sh"

# Name; a right call; a wrong one. A va_list hides the arguments, so that only the format itself can
# be wrong.
cases=(
    'print_indented;     print_indented("%d", 1);             print_indented("%d", "text")'
    'report_message;     report_message(9, "%s", "text");     report_message(9, "%s", 1)'
    'format_string_alloc;format_string_alloc("%d", list);     format_string_alloc("%y", list)'
    'format_string_new;  format_string_new("%ld", 1L);        format_string_new("%ld", 1.0)'
    'format_string_bounded;     format_string_bounded(area, 8, "%c", 65)
                         ;      format_string_bounded(area, 8, "%c")'
    'string_buffer_append_format;string_buffer_append_format(&buffer, "%g", 1.0)
                         ;       string_buffer_append_format(&buffer, "%g", 1)'
    'set_web_error;      set_web_error("%s", area);           set_web_error("%s%s", area)'
)

# compiles CALL
compiles() {
    cat >"$scratch/call.cpp" <<CALL
#include <cstdarg>
#include "support/c-utils.h"
#include "support/error.h"
#include "web/web.h"
void call(char *area, string_buffer &buffer, std::va_list list);
void call(char *area, string_buffer &buffer, std::va_list list)
{
    static_cast<void>(area), static_cast<void>(buffer), static_cast<void>(list);
    static_cast<void>($1);
}
CALL
    # shellcheck disable=SC2086 # the flags are words
    "$CORVELLA_COMPILER" -std=c++17 $CORVELLA_FLAGS -I"$CORVELLA_SOURCES" -Werror=format \
        -fsyntax-only "$scratch/call.cpp" >"$scratch/log" 2>&1
}

tested=()
for entry in "${cases[@]}"; do
    IFS=';' read -r -d '' name right wrong <<<"$entry" || true
    tested+=("${name// /}")
    compiles "$right" || { echo "does not compile: $right"; cat "$scratch/log"; exit 1; }
    ! compiles "$wrong" || { echo "compiles: $wrong"; exit 1; }
    grep -q 'Werror.*format' "$scratch/log" || { cat "$scratch/log"; exit 1; }
done

# Whatever has a parameter of that name is among them.
declared=$(find "$CORVELLA_SOURCES"/{support,web,platform} -name '*.h' -exec cat {} + |
    sed 's://.*::' | tr '\n' ' ' | grep -oE '[a-z_0-9]+\([^()]*\*format,[^()]*\)' |
    sed 's/(.*//' | sort -u)
if [ "$declared" != "$(printf '%s\n' "${tested[@]}" | sort)" ]; then
    printf 'declared: %s\ntested:   %s\n' "${declared//$'\n'/ }" "${tested[*]}"
    exit 1
fi
