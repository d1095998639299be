"""What the public headers publish. published.py SOURCES functions|caller PART...

functions prints the names of the functions; caller prints a program that refers to every function
and variable, and so links only if each is declared and defined. PART is support, web or platform.
"""

import pathlib
import re
import sys

FACES = {
    "support": ("support/error.h", "support/c-utils.h", "support/options.h"),
    "web": ("web/web.h",),
    "platform": ("platform/platform.h",),
}


def headers(sources, part):
    """The faces of a part and what they include."""
    found = []
    for face in FACES[part]:
        text = (sources / face).read_text(encoding="utf-8")
        found += [face] + re.findall(r'^#include "(.*)"', text, re.MULTILINE)
    return found


def declarations(sources, part):
    """The declarations of a part's headers; each begins a line."""
    for header in headers(sources, part):
        text = (sources / header).read_text(encoding="utf-8")
        text = re.sub(r"//.*|^#.*|\[\[.*?\]\]", "", text, flags=re.MULTILINE)
        yield from re.findall(r"^ *([A-Za-z_][^;{]*[;{])", text, re.MULTILINE)


def names(sources, part, pattern):
    return {found[1] for found in (re.match(pattern, text) for text in declarations(sources, part))
            if found}


def functions(sources, *parts):
    pattern = r"(?!using |static_assert|extern |constexpr )[\w:<> \n]*[ \n*&](\w+)\([^;{]*\);"
    return set().union(*(names(sources, part, pattern) for part in parts))


def variables(sources, part):
    return names(sources, part, r"extern [^(]*[ *](\w+)(?:\[\d+\])?;")


def exceptions(sources, part):
    return names(sources, part, r"struct (\w+Exception) \{")


def symbols(sources, part):
    """The names of a library's symbols as nm -C prints them, without the functions' arguments."""
    types = exceptions(sources, part)
    return ({name + "()" for name in functions(sources, part)} | variables(sources, part) |
            {f"typeinfo for {name}" for name in types} |
            {f"typeinfo name for {name}" for name in types})


def caller(sources, parts):
    for part in parts:
        yield from (f'#include "{face}"' for face in FACES[part])
    yield "static const volatile void *volatile linked;"
    yield "template <class Published> static void link(Published &published)"
    yield "{ linked = reinterpret_cast<const volatile void *>(&published); }"
    yield "int main()\n{"
    for part in parts:
        for name in sorted(functions(sources, part) | variables(sources, part)):
            yield f"    link({name});"
    yield "}"


def main(sources, what, *parts):
    lines = {"functions": lambda: sorted(functions(sources, *parts)),
             "caller": lambda: caller(sources, parts)}[what]()
    print("\n".join(lines))


if __name__ == "__main__":
    main(pathlib.Path(sys.argv[1]), *sys.argv[2:])
