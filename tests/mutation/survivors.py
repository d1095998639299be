"""The survivors that survivors.txt explains."""

import pathlib
import re
import sys

HERE = pathlib.Path(__file__).resolve().parent
sys.path.insert(0, str(HERE.parent / "harness"))
from explained import read_explained  # noqa: E402


def read_survivors():
    """The reasons by the names of the mutants."""
    reasons = {}
    for (file, line_text, what), reason in read_explained(HERE / "survivors.txt").items():
        change, number = re.fullmatch(r"(.*?)(?: \[(\d+)\])?", what).groups()
        reasons[file, line_text, change, int(number or 1)] = reason
    return reasons
