#!/usr/bin/env python3
"""check.py TRACEFILE: compares what the tests did not reach with tests/coverage/unreachable.txt.

Fails when something else was not reached, or when all of what the list explains was.
"""

import json
import pathlib
import re
import sys

TOP = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(TOP / "tests" / "harness"))
from explained import read_explained  # noqa: E402

LIST = pathlib.Path(__file__).resolve().parent / "unreachable.txt"


def unreached(trace):
    """For each file and line text: how many branches of all lines with that text were not reached,
    None for a whole line; and the number of one of them."""
    found = {}
    for file in trace["files"]:
        texts = (TOP / file["file"]).read_text().split("\n")
        for line in file["lines"]:
            if line["gcovr/noncode"]:
                continue
            text = texts[line["line_number"] - 1].strip()
            missed = sum(branch["count"] == 0 for branch in line["branches"])
            earlier, _ = found.get((file["file"], text), (0, 0))
            if line["count"] == 0 or earlier is None:
                found[file["file"], text] = (None, line["line_number"])
            elif missed:
                found[file["file"], text] = (earlier + missed, line["line_number"])
    return found


def read_list():
    """For each file and line text as many branches as may be missed, None for the whole line."""
    allowed = {}
    for file, text, what in read_explained(LIST):
        count = re.fullmatch(r"line|(\d+) branch(es)?", what)
        if count is None:
            raise ValueError(f"{LIST}: neither 'line' nor a number of branches: {what}")
        allowed[file, text] = int(count[1]) if count[1] else None
    return allowed


def is_allowed(missed, allowed):
    return missed == allowed or None not in (missed, allowed) and missed < allowed


def never_compiled(trace):
    """The product's sources of which there are no counts at all."""
    sources = {str(path.relative_to(TOP)) for folder in ("support", "web", "tool", "platform")
               for path in (TOP / folder).rglob("*.cpp")}
    return sources - {file["file"] for file in trace["files"]}


def print_totals(trace):
    lines = [line for file in trace["files"] for line in file["lines"]
             if not line["gcovr/noncode"]]
    branches = [branch for line in lines for branch in line["branches"]]
    print(f"lines: {sum(line['count'] > 0 for line in lines)} of {len(lines)}, "
          f"branches: {sum(branch['count'] > 0 for branch in branches)} of {len(branches)}, "
          f"files: {len(trace['files'])}")


def main():
    with open(sys.argv[1]) as file:
        trace = json.load(file)
    found = unreached(trace)
    allowed = read_list()
    print_totals(trace)
    failures = 0
    for file in sorted(never_compiled(trace)):
        print(f"not compiled or never run: {file}")
        failures += 1
    for (file, text), (missed, number) in sorted(found.items()):
        if (file, text) not in allowed or not is_allowed(missed, allowed[file, text]):
            what = "the line" if missed is None else f"branches: {missed}"
            print(f"not reached: {file}:{number}: {what}\n    {text}")
            failures += 1
    for file, text in sorted(allowed.keys() - found.keys()):
        print(f"explained in unreachable.txt, but reached or gone: {file}\n    {text}")
        failures += 1
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
