"""A function has at most 60 lines and a complexity of 10; a file at most 400 lines of 100
columns."""
import os
import re
import subprocess

import tree

MOST_LINES_OF_FUNCTION = 60
MOST_COMPLEXITY = 10
MOST_LINES_OF_FILE = 400
MOST_COLUMNS = 100

# pmccabe's columns: complexity with a switch counted once, and with each of its cases; statements,
# first line, lines, the place and the name.
FUNCTION = re.compile(r"^(\d+)\t\d+\t\d+\t\d+\t(\d+)\t(.*)$")
# What pmccabe can read: GoogleTest's macros look like no functions to it.
WITH_FUNCTIONS = tree.PRODUCT + ("examples", "bench")


def function_findings():
    paths = [os.path.join(tree.root(), path)
             for path in tree.files(*WITH_FUNCTIONS, endings=".cpp")]
    told = subprocess.run(["pmccabe", *paths], capture_output=True, text=True, check=False)
    yield from told.stderr.splitlines()
    functions = [FUNCTION.match(line) for line in told.stdout.splitlines()]
    if len(functions) < len(paths):
        yield f"pmccabe sees only {len(functions)} functions in {len(paths)} files"
    for function in functions:
        if function is None:
            yield "pmccabe says what this check cannot read"
            continue
        complexity, lines, place = function.groups()
        if int(complexity) > MOST_COMPLEXITY:
            yield f"{place}: complexity {complexity} is above {MOST_COMPLEXITY}"
        if int(lines) > MOST_LINES_OF_FUNCTION:
            yield f"{place}: {lines} lines are more than {MOST_LINES_OF_FUNCTION}"


def file_findings():
    for path in tree.files(endings=tree.CPP + (".py", ".sh", ".cmake", "CMakeLists.txt")):
        lines = tree.text(path).splitlines()
        if len(lines) > MOST_LINES_OF_FILE:
            yield f"{path}: {len(lines)} lines are more than {MOST_LINES_OF_FILE}"
        for number, line in enumerate(lines, 1):
            if len(line) > MOST_COLUMNS:
                yield f"{path}:{number}: {len(line)} columns are more than {MOST_COLUMNS}"


tree.finish(list(function_findings()) + list(file_findings()))
