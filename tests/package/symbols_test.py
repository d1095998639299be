"""symbols_test.py SOURCES NM LIBRARY...: the libraries define what their headers publish.

A shared library exports nothing else. A static one defines nothing else but names of the namespace
corvella, so that a caller's own names neither collide with the library's nor replace them. Weak
instances of the standard library and the compiler's own names do not count.
"""

import pathlib
import re
import subprocess
import sys

sys.path.insert(0, str(pathlib.Path(__file__).parent.parent))
import published  # noqa: E402

# Of functions, their local variables, guards, type information and virtual tables.
PREFIX = r"_Z(?:Z|GV|T[ISTV])?"
STANDARD = re.compile(PREFIX + r"(?:N?K?S|NK?9__gnu_cxx|n[wa]|d[la])")
INTERNAL = re.compile(PREFIX + r"NK?8corvella")
COMPILER = re.compile(r"__|DW\.ref\.|_GLOBAL_|_(?:init|fini|edata|end)$")


def nm(command, *options):
    output = subprocess.run([command, "--defined-only", *options], stdout=subprocess.PIPE,
                            text=True, check=True, timeout=60).stdout
    return [line.split(" ", 2)[1:] for line in output.splitlines()
            if re.match(r"[0-9a-f]+ [A-Za-z] ", line)]


def own_symbols(command, library, is_shared):
    """Its global symbols as nm -C prints them, without the functions' arguments."""
    table = "-D" if is_shared else "-g"
    plain, demangled = nm(command, table, library), nm(command, table, "-C", library)
    for (kind, symbol), (_, name) in zip(plain, demangled):
        symbol = re.sub("^_(?=_Z)", "", symbol)
        if COMPILER.match(symbol) or (kind in "VWuvw" and STANDARD.match(symbol)):
            continue
        if is_shared or not INTERNAL.match(symbol):
            yield re.sub(r"\(.*", "()", name)


def complaints(sources, command, library):
    part = re.search(r"libcorvella_(\w+)\.", library)[1]
    wanted = published.symbols(sources, part)
    found = set(own_symbols(command, library, not library.endswith(".a")))
    for name in sorted(wanted - found):
        yield f"{library}: no {name}: does its header have the visibility pragmas?"
    for name in sorted(found - wanted):
        yield f"{library}: {name}: declare it in a public header, or put it in namespace corvella"


def main():
    sources = pathlib.Path(sys.argv[1])
    found = [text for library in sys.argv[3:] for text in complaints(sources, sys.argv[2], library)]
    print("\n".join(found))
    return 1 if found else 0


sys.exit(main())
