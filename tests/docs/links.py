"""links.py DIRECTORY: no link between the HTML pages of a directory is broken."""

import html
import pathlib
import re
import sys
import urllib.parse


def broken_links(pages):
    targets = {path.resolve(): set(re.findall(r'(?:id|name)="([^"]+)"', text))
               for path, text in pages.items()}
    for path, text in pages.items():
        for link in re.findall(r'(?:href|src)="([^"]+)"', text):
            name, _, anchor = html.unescape(link).partition("#")
            if re.match("[a-z]+:|//", name):
                continue
            target = (path.parent / urllib.parse.unquote(name) if name else path).resolve()
            if not target.exists() or anchor and anchor not in targets.get(target, {anchor}):
                yield f"{path.name}: {link}"


def main():
    found = sorted(pathlib.Path(sys.argv[1]).rglob("*.html"))
    broken = sorted(set(broken_links({path: path.read_text(errors="replace") for path in found})))
    print(*broken, sep="\n", end="")
    return 1 if broken or not found else 0


sys.exit(main())
