"""What the public headers declare."""

import re

FACES = ("support/error.h", "support/c-utils.h", "support/options.h", "web/web.h",
         "platform/platform.h")


def public_headers(sources):
    """The faces of the subsystems and what they include."""
    headers = []
    for face in FACES:
        text = (sources / face).read_text(encoding="utf-8")
        headers += [face] + re.findall(r'^#include "(.*)"', text, re.MULTILINE)
    return headers


def functions_of(text):
    """The names of the functions that a header declares; each declaration begins a line."""
    text = re.sub(r"//.*", "", text)
    text = re.sub(r"\[\[.*?\]\]\s*", "", text)
    declarations = re.findall(
        r"^(?!using |static_assert|extern )[A-Za-z_][\w:<> ]*[ *&](\w+)\([^;{]*\);", text,
        re.MULTILINE)
    return set(declarations)


def public_functions(sources):
    names = set()
    for header in public_headers(sources):
        names |= functions_of((sources / header).read_text(encoding="utf-8"))
    if len(names) < 100:
        raise AssertionError(f"only {len(names)} functions found: {sorted(names)}")
    return names
