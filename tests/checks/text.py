#!/usr/bin/env python3
"""Every file is text as .editorconfig asks for. text.py TREE

UTF-8, no carriage return, no tab, no blank at a line's end, one newline at the file's end, and no
line longer than the limit; where lines may be longer, .editorconfig says so.
"""

import fnmatch
import os
import sys

import tree


def longest_lines(top):
    """The patterns of .editorconfig with their max_line_length, the last that fits counting."""
    limits, patterns = [], []
    for _, line in tree.lines(top, ".editorconfig"):
        if line.startswith("["):
            before, _, choices = line.strip("[]").partition("{")
            patterns = [before + choice for choice in choices.strip("}").split(",")]
        elif line.startswith("max_line_length"):
            value = line.split("=")[1].strip()
            limits += [(pattern, int(value) if value.isdigit() else None) for pattern in patterns]
    return limits


def limit_for(path, limits):
    name = os.path.basename(path)
    fitting = [limit for pattern, limit in limits if fnmatch.fnmatch(name, pattern)]
    return fitting[-1] if fitting else None


def findings_in(top, path, limit):
    with open(os.path.join(top, path), "rb") as stream:
        content = stream.read()
    try:
        text = content.decode("utf-8")
    except UnicodeDecodeError as error:
        yield f"{path}: no UTF-8: {error}"
        return
    if content and (not text.endswith("\n") or text.endswith("\n\n")):
        yield f"{path}: does not end in one newline"
    for number, line in enumerate(text.split("\n"), 1):
        if "\r" in line:
            yield f"{path}:{number}: carriage return"
        if "\t" in line:
            yield f"{path}:{number}: tab"
        if line.endswith(" "):
            yield f"{path}:{number}: blank at the end"
        if limit and len(line) > limit:
            yield f"{path}:{number}: {len(line)} columns, and {limit} are allowed"


def main(top):
    limits = longest_lines(top)
    if not limits:
        sys.exit(".editorconfig has no max_line_length")
    paths = [path for path in tree.files(top) if not path.endswith("~")]
    findings = [finding for path in paths
                for finding in findings_in(top, path, limit_for(path, limits))]
    tree.report(findings, paths)


main(sys.argv[1])
