"""The files of the tree, for the checks beside this file."""
import os
import sys

PRODUCT = ("support", "web", "platform", "tool")
CPP = (".cpp", ".h")
NOT_OURS = ("build", ".git", os.path.join("fuzz", "corpus"))


def root():
    """The tree's own folder, which every check gets as its first argument."""
    return sys.argv[1]


def files(*folders, endings=("",)):
    """The paths, from the root on, of the files below folders, or below the root, in order."""
    for folder in folders or (".",):
        for path, subfolders, names in os.walk(os.path.join(root(), folder)):
            here = os.path.relpath(path, root())
            subfolders[:] = sorted(
                name for name in subfolders
                if os.path.normpath(os.path.join(here, name)) not in NOT_OURS
                and name != "__pycache__")
            for name in sorted(names):
                if name.endswith(endings):
                    yield os.path.normpath(os.path.join(here, name))


def text(path):
    with open(os.path.join(root(), path), encoding="utf-8", newline="") as file:
        return file.read()


def finish(findings):
    """Prints the findings and ends the check."""
    for finding in findings:
        print(finding)
    sys.exit(1 if findings else 0)
