#!/usr/bin/env python3
"""Both compilers check the arguments of every formatter. formatters.py TREE

Each function of the product's headers with a parameter "format" is called rightly and wrongly, one
call a line; each compiler warns of the wrong lines only. A compiler that is missing is left out.
"""

import re
import shutil
import subprocess
import sys

import tree

# A call up to its format.
CALLS = {
    "print_indented": "print_indented(",
    "report_message": "report_message(9, ",
    "format_string_alloc": "(void)format_string_alloc(",
    "format_string_new": "(void)format_string_new(",
    "format_string_bounded": "format_string_bounded(buffer, 9, ",
    "string_buffer_append_format": "string_buffer_append_format(&area, ",
    "set_web_error": "set_web_error(",
}
RIGHT = ['"%s %d", buffer, 1', '"%.2f%%", 1.0']
WRONG = ['"%d", buffer', '"%s", 1', '"%s"', '"%ld", 1', '"x", 1', '"%y"']
# Of a list of arguments only the format is known.
RIGHT_LISTS = ['"%s %d", list']
WRONG_LISTS = ['"%y", list']
COMPILERS = ("g++", "clang++")
OPTIONS = ["-std=c++17", "-Wformat", "-fsyntax-only", "-fno-diagnostics-color", "-x", "c++", "-"]
PROGRAM = """#include <cstdarg>
#include "support/c-utils.h"
#include "support/error.h"
#include "web/web.h"
void call(char *buffer, string_buffer &area, std::va_list list)
{
"""


def formatters(top):
    """The headers' functions with a parameter called format, and where each is declared."""
    found = {}
    for path in tree.files(top, tree.PRODUCT, (".h",)):
        text = "\n".join(line for _, line in tree.lines(top, path))
        for name in re.findall(r"\b(\w+)\([^();]*\bconst char \*format\b", text):
            found[name] = path
    return found


def calls():
    """Each call, and whether it is right."""
    for name, start in CALLS.items():
        takes_list = name == "format_string_alloc"
        for arguments in RIGHT_LISTS if takes_list else RIGHT:
            yield f"{start}{arguments});", True
        for arguments in WRONG_LISTS if takes_list else WRONG:
            yield f"{start}{arguments});", False


def warned_lines(compiler, top, program):
    """The numbers of the program's lines of which the compiler warns."""
    run = subprocess.run([compiler, f"-I{top}", *OPTIONS], input=program, capture_output=True,
                         text=True, check=False)
    if run.returncode != 0:
        sys.exit(run.stderr)
    return {int(line) for line in re.findall(r"^<stdin>:(\d+):\d+: warning:", run.stderr, re.M)}


def main(top):
    found = formatters(top)
    findings = [f"{found.get(name, __file__)}: {name} is declared or called here, not both"
                for name in sorted(set(found) ^ set(CALLS))]
    made = list(calls())
    program = PROGRAM + "".join(call + "\n" for call, _ in made) + "}\n"
    first = PROGRAM.count("\n") + 1
    compilers = [compiler for compiler in COMPILERS if shutil.which(compiler)]
    for compiler in compilers:
        warned = warned_lines(compiler, top, program)
        for number, (call, is_right) in enumerate(made, first):
            if (number in warned) == is_right:
                findings.append(f"{compiler} {'warns' if is_right else 'does not warn'} of {call}")
    tree.report(findings, compilers)


main(sys.argv[1])
