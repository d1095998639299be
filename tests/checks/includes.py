#!/usr/bin/env python3
"""The product's includes run one way. includes.py TREE

Each part of the product may include itself and what the table grants it, and nothing else of the
tree. An entry of a single file adds to what its part may include.
"""

import re
import sys

import tree

MAY_INCLUDE = {
    "support/error": (),
    "support/c-utils": ("support/error",),
    "support/options": ("support/c-utils",),
    "web": ("support/c-utils", "support/error"),
    "platform": (),
    "tool": ("web", "support/options", "support/c-utils", "support/error", "support/version"),
    "tool/desktop_macos.cpp": ("platform",),
}


def part_of(path):
    """support/error.h and what is below support/error/ are one part, and so with the others."""
    words = path.split("/")
    if words[0] == "support" and len(words) > 1:
        return "support/" + re.sub(r"\.h$", "", words[1])
    return words[0]


def findings_in(top, path):
    part = part_of(path)
    granted = {part, *MAY_INCLUDE.get(part, ()), *MAY_INCLUDE.get(path, ())}
    for number, line in tree.lines(top, path):
        include = re.match(r'\s*#\s*include\s*"([^"]+)"', line)
        if include and part_of(include[1]) not in granted:
            yield f"{path}:{number}: {part} includes {include[1]}"


def main(top):
    paths = tree.files(top, tree.PRODUCT, tree.CPP)
    findings = [finding for path in paths for finding in findings_in(top, path)]
    strangers = [path for path in paths if part_of(path) not in MAY_INCLUDE]
    findings += [f"{path}: belongs to no part" for path in strangers]
    tree.report(findings, paths)


main(sys.argv[1])
