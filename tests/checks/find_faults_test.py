#!/usr/bin/env python3
"""Each check of the tree finds what it is for. find_faults_test.py TREE

A small tree is made with the settings of the true one and one good file of each kind. The checks
find nothing in it, and each finds each fault that is put into it.
"""

import os
import shutil
import subprocess
import sys
import tempfile

HERE = os.path.dirname(os.path.abspath(__file__))
GOOD = {
    "support/c-utils/bell.h": "#pragma once\n\nvoid ring_bell();\n",
    "support/c-utils/bell.cpp":
        '#include "support/c-utils/bell.h"\n\nint a()\n{\n    return 1;\n}\n',
    "tests/support/c-utils/bell_test.cpp": "int b();\n",
    "scripts/say.sh": "#!/bin/sh\necho said\n",
    "scripts/say.py": 'print("said")\n',
}
BRANCHES = "".join(f"    if (a == {n}) {{\n        return {n + 1};\n    }}\n" for n in range(10))
LONG = "int f()\n{\n" + "    f();\n" * 57 + "    return 0;\n}\n"
# The check; the file that is written; the text in it; what the check says of it.
FAULTS = (
    ("includes.py", "support/error/a.h", '#include "support/c-utils/bell.h"\n', "includes"),
    ("includes.py", "support/c-utils/a.h", '#include "web/web.h"\n', "includes"),
    ("includes.py", "support/options.h", '#include "support/error.h"\n', "includes"),
    ("includes.py", "web/a.cpp", '#include "tool/output.h"\n', "includes"),
    ("includes.py", "web/a.cpp", '# include "platform/platform.h"\n', "includes"),
    ("includes.py", "tool/output.cpp", '#include "platform/platform.h"\n', "includes"),
    ("includes.py", "platform/a.cpp", '#include "support/error.h"\n', "includes"),
    ("includes.py", "support/other/a.h", "\n", "belongs to no part"),
    ("banned.py", "web/a.cpp", "char *f(char *a)\n{\n    return strcpy(a, a);\n}\n", "strcpy"),
    ("banned.py", "web/a.cpp", "int f()\n{\n    return std::atoi(\"1\");\n}\n", "atoi"),
    ("banned.py", "web/a.cpp", "int (*f)(const char *) = std::atoi;\n", "atoi"),
    ("banned.py", "web/a.cpp", "int *f = new int;\n", "new"),
    ("banned.py", "excuses", "web/a.cpp | strcpy | none\n", "unused excuse: web/a.cpp, strcpy"),
    ("banned.py", "excuses", "web/a.cpp | strcpy |\n", "no reason"),
    ("mirror.py", "web/a.cpp", "int a;\n", "add tests/web/a_test.cpp"),
    ("sizes.py", "web/a.cpp", LONG, "61 lines"),
    ("sizes.py", "web/a.cpp", f"int f(int a)\n{{\n{BRANCHES}    return 0;\n}}\n", "complexity 11"),
    ("sizes.py", "tests/a.cpp", "\n" * 401, "401 lines"),
    ("text.py", "web/a.cpp", "int a; \n", "blank at the end"),
    ("text.py", "web/a.cpp", "\tint a;\n", "tab"),
    ("text.py", "web/a.cpp", "int a;\r\n", "carriage return"),
    ("text.py", "web/a.cpp", "int a;", "does not end in one newline"),
    ("text.py", "web/a.cpp", "int a;\n\n", "does not end in one newline"),
    ("text.py", "CMakeLists.txt", "#" * 101 + "\n", "101 columns"),
    ("text.py", "web/a.cpp", "// \xe9\n".encode("latin-1"), "no UTF-8"),
    ("settings.py", ".clang-format", "IndentWidth: 2\nColumnLimit: 100\n", "IndentWidth"),
    ("settings.py", ".clang-format", "IndentWidth: 4\nColumnLimit: 99\n", "ColumnLimit"),
    ("settings.py", ".clang-tidy", "FormatStyle: none\n", "FormatStyle"),
    ("format.sh", "web/a.cpp", "int  a;\n", "not formatted|clang-format-violations"),
    ("scripts.sh", "scripts/bad.sh", "#!/bin/bash\necho $1\n", "SC2086"),
    ("scripts.sh", "scripts/bad", "#!/usr/bin/env bash\necho $1\n", "SC2086"),
    ("python.sh", "scripts/bad.py", "if\n", "SyntaxError"),
    ("python.sh", "scripts/bad.py", "import os\n", "imported but unused"),
    ("cppcheck.sh", "web/a.cpp", "int f()\n{\n    int a[2];\n    return a[2];\n}\n", "arrayIndex"),
)


def write(top, path, content):
    path = os.path.join(top, path)
    os.makedirs(os.path.dirname(path), exist_ok=True)
    with open(path, "wb") as stream:
        stream.write(content if isinstance(content, bytes) else content.encode())
    if os.path.dirname(path).endswith("scripts"):
        os.chmod(path, 0o755)


def run(check, top):
    """The exit status of a check on the tree, and what it prints."""
    script = os.path.join(HERE, check)
    command = [sys.executable if check.endswith(".py") else "bash", script, top]
    if check == "banned.py":
        command.append(os.path.join(top, "excuses"))
    done = subprocess.run(command, capture_output=True, text=True, check=False)
    return done.returncode, done.stdout + done.stderr


def small_tree(top, true_tree):
    for name in (".clang-format", ".clang-tidy", ".editorconfig"):
        shutil.copy(os.path.join(true_tree, name), top)
    for path, content in {**GOOD, "excuses": ""}.items():
        write(top, path, content)


def tried(true_tree, check, fault=None):
    """What the check says of the small tree, with the fault in it if there is one."""
    with tempfile.TemporaryDirectory() as top:
        small_tree(top, true_tree)
        if fault:
            write(top, *fault)
        return run(check, top)


def main(true_tree):
    failures = 0
    for check in sorted({fault[0] for fault in FAULTS}):
        status, said = tried(true_tree, check)
        if status not in (0, 77):
            failures += 1
            print(f"{check} finds a fault where there is none: {said}")
    for check, path, content, wanted in FAULTS:
        status, said = tried(true_tree, check, (path, content))
        found = status not in (0, 77) and any(word in said for word in wanted.split("|"))
        if not found and status != 77:
            failures += 1
            print(f"{check} does not find {wanted!r} in {content!r}: {status}, {said}")
    sys.exit(1 if failures else 0)


main(sys.argv[1])
