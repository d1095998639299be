#!/usr/bin/env python3
"""Applies small mutations to one source file and prints those that no test notices.

    scripts/mutate.py FILE [--tests FOLDER] [--line N]

docs/mutation.md describes when and how to run it.
"""

import argparse
import os
import pathlib
import re
import shutil
import subprocess
import sys

TOP = pathlib.Path(__file__).resolve().parents[1]
COPY = TOP / "build" / "mutation" / "tree"
BUILD = TOP / "build" / "mutation" / "build"

# clang-format puts a space on both sides of a binary operator, and of nothing else that looks like
# one.
SWAPS = {
    "<": ("<=", ">="), "<=": ("<", ">"), ">": (">=", "<="), ">=": (">", "<"),
    "==": ("!=",), "!=": ("==",), "&&": ("||",), "||": ("&&",),
    "+": ("-",), "-": ("+",), "*": ("/",), "/": ("*",), "%": ("*",),
    "+=": ("-=",), "-=": ("+=",), "&": ("|",), "|": ("&",), "<<": (">>",), ">>": ("<<",),
}
LITERAL = re.compile(r'"(?:\\.|[^"\\])*"|\'(?:\\.|[^\'\\])+\'|//.*')
OPERATOR = re.compile(r"(?<= )(\S{1,2})(?= )")
NUMBER = re.compile(r"(?<![\w.])\d+(?![\w.'])")
CONDITION = re.compile(r"(?<=\b(?:if|or) \()(?=[^;]*\) \{$)|(?<=\bwhile \()(?=.*\) \{$)")
CALL = re.compile(r"^\s+[\w:.>\[\]-]+\(.*\);$")


def mutations_of(line):
    """Yields what the line may become."""
    code = LITERAL.sub(lambda found: "_" * len(found[0]), line)
    if code.lstrip().startswith(("#", "*", "static_assert", "using")):
        return
    for found in OPERATOR.finditer(code):
        for other in SWAPS.get(found[1], ()):
            yield line[:found.start()] + other + line[found.end():]
    for found in NUMBER.finditer(code):
        yield f"{line[:found.start()]}{int(found[0]) + 1}{line[found.end():]}"
    for found in CONDITION.finditer(code):
        yield f"{line[:found.start()]}!({line[found.start():-3]})) {{"
    if CALL.match(code):
        yield ";"


def copy_tree():
    """Copies what git knows of the tree. A file that has not changed keeps its time."""
    listed = subprocess.run(["git", "ls-files", "-co", "--exclude-standard"], cwd=TOP, check=True,
                            capture_output=True, text=True).stdout.splitlines()
    for name in filter(lambda name: (TOP / name).is_file(), listed):
        copy = COPY / name
        copy.parent.mkdir(parents=True, exist_ok=True)
        if not copy.exists() or copy.read_bytes() != (TOP / name).read_bytes():
            shutil.copy(TOP / name, copy)


def passes(*command):
    return subprocess.run([str(word) for word in command], stdin=subprocess.DEVNULL,
                          stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL).returncode == 0


def compiles(folder):
    return passes("cmake", "--build", BUILD, "--target", folder + "/all")


def tests_pass(folder):
    return passes("ctest", "--test-dir", BUILD / folder, "--parallel", 2 * os.cpu_count(),
                  "--timeout", "30", "--stop-on-failure")


def objects_of(file):
    return [path.read_bytes() for path in sorted(BUILD.rglob(pathlib.Path(file).name + ".o"))]


def survivors(file, folder, only_line):
    """Yields the number and the text of each mutated line that passes the tests."""
    source = COPY / file
    lines = source.read_text().splitlines()
    original = objects_of(file)
    for at, line in enumerate(lines):
        if only_line not in (None, at + 1):
            continue
        for mutated in mutations_of(line):
            source.write_text("\n".join(lines[:at] + [mutated] + lines[at + 1:] + [""]))
            if compiles(folder) and objects_of(file) != original and tests_pass(folder):
                yield at + 1, mutated
    source.write_text("\n".join(lines + [""]))


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("file", help="a source of the product, below the top of the tree")
    parser.add_argument("--tests", help="the folder with its tests (default: tests/ and its own)")
    parser.add_argument("--line", type=int, help="mutate only this line")
    options = parser.parse_args()
    folder = options.tests or "tests/" + os.path.dirname(options.file)
    if os.geteuid() == 0:
        sys.exit("mutants may remove any file: not as root")
    copy_tree()
    if not (passes("cmake", "-S", COPY, "-B", BUILD, "-G", "Ninja", "-DCMAKE_BUILD_TYPE=Debug",
                   "-DCMAKE_CXX_FLAGS_DEBUG=-O1") and compiles(folder) and tests_pass(folder)):
        sys.exit(f"the tests in {folder} do not pass without a mutation")
    for number, text in survivors(options.file, folder, options.line):
        print(f"{options.file}:{number}: {text.strip()}", flush=True)


if __name__ == "__main__":
    main()
