#!/usr/bin/env python3
"""Functions and files stay small. sizes.py TREE

pmccabe measures the product's functions. A file of C++ has at most 400 lines, the tests' too.
"""

import os
import subprocess
import sys

import tree

MOST_LINES = 60
MOST_COMPLEXITY = 10
MOST_FILE_LINES = 400


def functions(top, paths):
    """Place, name, complexity and lines of every function, as pmccabe measures them."""
    run = subprocess.run(["pmccabe", *paths], cwd=top, check=True, capture_output=True, text=True)
    if run.stderr:
        sys.exit(run.stderr)
    for row in run.stdout.splitlines():
        complexity, _, _, _, lines, place = row.split("\t", 5)
        yield place, int(complexity), int(lines)


def main(top):
    findings = []
    measured = 0
    for place, complexity, lines in functions(top, tree.files(top, tree.PRODUCT, tree.CPP)):
        measured += 1
        if lines > MOST_LINES:
            findings.append(f"{place}: {lines} lines, and {MOST_LINES} are allowed")
        if complexity > MOST_COMPLEXITY:
            findings.append(f"{place}: complexity {complexity}, and {MOST_COMPLEXITY} is allowed")
    for path in tree.files(top, endings=tree.CPP):
        with open(os.path.join(top, path), encoding="utf-8") as stream:
            count = len(stream.readlines())
        if count > MOST_FILE_LINES:
            findings.append(f"{path}: {count} lines, and {MOST_FILE_LINES} are allowed")
    tree.report(findings, measured)


main(sys.argv[1])
