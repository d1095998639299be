#!/usr/bin/env python3
"""The product calls none of the functions that invite errors. banned.py TREE [EXCUSES]

A call that the behaviour asks for is excused in banned_excuses.txt: file, function and reason, in
columns apart by "|". An excuse that excuses nothing is a finding too.
"""

import os
import re
import sys

import tree

INSTEAD = {
    "copy_string_bounded()": "strcpy strcat strncat strncpy stpcpy",
    "format_string_bounded()": "sprintf vsprintf",
    "a reader that tells errors": "gets sscanf fscanf scanf vsscanf atoi atol atoll atof",
    "a search with no state of its own": "strtok strtok_r",
    "the function that is given its memory": "localtime gmtime ctime asctime",
    "checked_malloc(), checked_realloc()": "malloc calloc realloc free strdup strndup alloca",
    "nothing: a name can mean another file later": "tmpnam tempnam mktemp",
    "a return": "setjmp longjmp goto",
    "a program started without a shell": "system popen",
    "hash_noise_float()": "rand srand random",
    "poll(), or a look at FD_SETSIZE before": "FD_SET",
    "a plain record": "new delete",
    "an option": "getenv putenv setenv",
    "getaddrinfo()": "gethostbyname inet_addr inet_ntoa",
    "a record of the right type": "reinterpret_cast const_cast",
}
ADVICE = {name: advice for advice, names in INSTEAD.items() for name in names.split()}
WORDS = {"goto", "new", "delete", "const_cast", "reinterpret_cast"}  # no parenthesis need follow
CALL = re.compile(r"(?<![\w.>])(%s)\b(?=\s*\()" % "|".join(sorted(set(ADVICE) - WORDS)))
NAMED = re.compile(r"(?<![\w.>])std::(%s)\b" % "|".join(sorted(set(ADVICE) - WORDS)))
WORD = re.compile(r"\b(%s)\b" % "|".join(sorted(WORDS)))
TEXT_OR_COMMENT = re.compile(
    r"""//[^\n]*|/\*.*?\*/|"(?:\\.|[^"\\\n])*"|'(?:\\.|[^'\\\n])*'""", re.DOTALL)


def without_texts(source):
    """The source with its comments, texts and includes blanked, line by line as it was."""
    def blank(match):
        return re.sub(r"[^\n]", " ", match[0])
    source = TEXT_OR_COMMENT.sub(blank, source)
    return re.sub(r"^\s*#\s*include.*$", blank, source, flags=re.MULTILINE)


def calls_in(top, path):
    """Pairs of a line's number and the banned name in it; a deleted function is none."""
    with open(os.path.join(top, path), encoding="utf-8") as stream:
        code = re.sub(r"=\s*delete\b", "", without_texts(stream.read()))
    for number, line in enumerate(code.split("\n"), 1):
        names = {name for kind in (CALL, NAMED, WORD) for name in kind.findall(line)}
        yield from ((number, name) for name in sorted(names))


def read_excuses(path):
    excuses = {}
    with open(path, encoding="utf-8") as stream:
        for line in stream:
            if line.strip() and not line.startswith("#"):
                file, name, reason = (column.strip() for column in line.split("|"))
                if not reason:
                    sys.exit(f"no reason for {file} and {name}")
                excuses[file, name] = False
    return excuses


def main(top, excuses_path):
    excuses = read_excuses(excuses_path)
    paths = tree.files(top, tree.PRODUCT, tree.CPP)
    findings = []
    for path in paths:
        for number, name in calls_in(top, path):
            if (path, name) in excuses:
                excuses[path, name] = True
            else:
                findings.append(f"{path}:{number}: {name}; instead: {ADVICE[name]}")
    findings += [f"unused excuse: {file}, {name}" for (file, name), used in excuses.items()
                 if not used]
    tree.report(findings, paths)


here = os.path.dirname(os.path.abspath(__file__))
main(sys.argv[1], sys.argv[2] if len(sys.argv) > 2 else os.path.join(here, "banned_excuses.txt"))
