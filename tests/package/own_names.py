"""own_names.py NM LIBRARY...: prints definitions of a caller's own, in the global namespace.

Each name of the namespace corvella is defined without that namespace and with the same parameters,
so that it is the symbol that the library would define if it were not for its namespace.
"""

import re
import subprocess
import sys

HEADERS = ("array", "csignal", "cstdint", "string", "string_view", "netdb.h", "sys/socket.h",
           "sys/time.h", "support/c-utils.h", "support/error.h", "support/options.h", "web/web.h")
EXPECTED = {"is_digit", "message_label", "print_text", "skip_white_space", "to_lower"}


def internal_symbols(nm, libraries):
    output = subprocess.run([nm, "-gC", "--defined-only", *libraries], stdout=subprocess.PIPE,
                            text=True, check=True, timeout=60).stdout
    found = set(re.findall(r"^[0-9a-f]+ [A-Z] (corvella::[a-z]\w*(?:\(.*\))?)$", output,
                           re.MULTILINE | re.IGNORECASE))
    return sorted(symbol.replace("corvella::", "") if "(" in symbol else symbol[10:]
                  for symbol in found), set(re.findall(r"[(, <]corvella::(\w+)", " ".join(found)))


def main():
    symbols, types = internal_symbols(sys.argv[1], sys.argv[2:])
    names = {re.match(r"\w+", symbol)[0] for symbol in symbols}
    if EXPECTED - names:
        sys.exit(f"not in the libraries: {EXPECTED - names}")
    for header in HEADERS:
        print(f"#include <{header}>")
    for name in sorted(types - names):
        print(f"struct {name} {{}};")
    print("extern int own_calls;\nint own_calls = 0;")
    for symbol in symbols:
        if "(" in symbol:
            print(f"int {symbol};\nint {symbol} {{ return ++own_calls; }}")
        else:
            print(f"extern int {symbol};\nint {symbol} = 0;")


main()
