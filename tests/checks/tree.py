"""What the checks of the tree share: its files, and how a check tells what it found."""

import os
import sys

PRODUCT = ("support", "web", "platform", "tool")
CPP = (".cpp", ".h")


def files(top, folders=(), endings=()):
    """The files of the tree, as sorted paths below it; the build folder is none of the tree."""
    found = []
    for folder, below, names in os.walk(top):
        if folder == top:
            below[:] = [name for name in below if name not in (".git", "build")]
        below[:] = [name for name in below if name != "__pycache__"]
        if os.path.relpath(folder, top) == "fuzz":
            below[:] = [name for name in below if name != "corpus"]  # any bytes at all
        for name in names:
            path = os.path.relpath(os.path.join(folder, name), top)
            if folders and path.split(os.sep)[0] not in folders:
                continue
            if not endings or path.endswith(endings):
                found.append(path)
    return sorted(found)


def lines(top, path):
    """The lines of a file without their ends, with their numbers."""
    with open(os.path.join(top, path), encoding="utf-8") as stream:
        return list(enumerate(stream.read().split("\n"), 1))


def report(findings, looked_at):
    """Prints the findings and ends: well when there is none, and something was looked at."""
    for finding in findings:
        print(finding)
    if not looked_at:
        sys.exit("nothing was looked at")
    sys.exit(1 if findings else 0)
