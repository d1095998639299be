"""mirror.py TREE: each source of the product has a test file that is easy to find.

The test file of folder/name.cpp is name_test.cpp or name_..._test.cpp below tests/folder. The
sources for Mac OS X are tested below tests/platform. Any other test file names the sources that it
tests: "Tests folder/name.cpp".
"""

import os
import re
import sys

from tree import PRODUCT, files, lines, report


def tests_of(source, tests):
    """The test files that a source's path leads to."""
    folder, name = os.path.split(source[:-len(".cpp")])
    folders = [f"tests/{folder}/"]
    if name.endswith("_macos"):
        folders.append("tests/platform/")
    name = re.sub("_(macos|linux|none)$", "", name)
    wanted = re.compile(re.escape(name) + r"_(.*_)?test\.cpp")
    return [test for test in tests
            if test.startswith(tuple(folders)) and wanted.fullmatch(os.path.basename(test))]


def findings(top):
    tests = files(top, ("tests",), ("_test.cpp",))
    named = {source for test in tests for _, line in lines(top, test)
             if line.startswith(("// ", "/// ")) for source in re.findall(r"[\w/-]+\.cpp", line)}
    for source in files(top, PRODUCT, (".cpp",)):
        if source not in named and not tests_of(source, tests):
            yield (f"{source}: no test; add tests/{source[:-len('.cpp')]}_test.cpp, or "
                   f"\"Tests {source}.\" to the first comment of the file that tests it")


if __name__ == "__main__":
    report(list(findings(sys.argv[1])), files(sys.argv[1], PRODUCT, (".cpp",)))
