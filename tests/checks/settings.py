#!/usr/bin/env python3
"""The settings of the editors, of clang-format and of clang-tidy agree. settings.py TREE"""

import re
import sys

import tree


def value(top, path, pattern):
    """What the first group of the pattern is in a line of the file."""
    for _, line in tree.lines(top, path):
        match = re.match(pattern, line)
        if match:
            return match[1]
    sys.exit(f"{path}: no line like {pattern}")


def main(top):
    indent = value(top, ".editorconfig", r"indent_size = (\w+)$")
    columns = value(top, ".editorconfig", r"max_line_length = (\w+)$")
    pairs = (
        (indent, ".clang-format", r"IndentWidth: (\w+)$"),
        (columns, ".clang-format", r"ColumnLimit: (\w+)$"),
        ("file", ".clang-tidy", r"FormatStyle: (\w+)$"),
    )
    findings = []
    for wanted, path, pattern in pairs:
        found = value(top, path, pattern)
        if found != wanted:
            findings.append(f"{path}: {pattern} is {found}, and {wanted} elsewhere")
    tree.report(findings, pairs)


main(sys.argv[1])
