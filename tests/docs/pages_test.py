"""pages_test.py SOURCE_DIR VERSION: the documents agree with the tree.

Links lead to files and headings that are there, what docs/architecture.md and its picture name
exists, the version is the newest heading of the change log and what the pages say it is, and the
README names every example.
"""

import pathlib
import re
import sys

SKIPPED = {".git", "build", "install"}
# What the documents may name that the product does not have: the system's own.
SYSTEM_NAMES = {"main", "free", "select", "socket", "connect", "gethostbyname", "send", "recv",
                "close", "sigaction"}


def files_of(sources, *suffixes):
    for path in sorted(sources.rglob("*")):
        parts = path.relative_to(sources).parts
        if path.suffix in suffixes and not SKIPPED.intersection(parts):
            yield path


def anchor_of(heading):
    text = re.sub(r"[^\w\- ]", "", heading.strip().lower())
    return text.replace(" ", "-")


def without_fences(text):
    return re.sub(r"^```.*?^```$", "", text, flags=re.MULTILINE | re.DOTALL)


def links_of(path):
    text = without_fences(path.read_text(encoding="utf-8"))
    return re.findall(r"\]\(([^)\s]+)\)", text)


def broken_links(sources):
    for path in files_of(sources, ".md"):
        for link in links_of(path):
            if re.match(r"[a-z]+:", link):
                continue
            name, _, anchor = link.partition("#")
            target = (path.parent / name).resolve() if name else path
            if not target.exists():
                yield f"{path}: no file {link}"
            elif anchor:
                headings = re.findall(r"^#+ (.*)$", target.read_text(encoding="utf-8"),
                                      re.MULTILINE)
                if anchor not in map(anchor_of, headings):
                    yield f"{path}: no heading {link}"


def product_text(sources):
    text = ""
    for folder in ("support", "web", "platform", "tool"):
        for path in files_of(sources / folder, ".h", ".cpp"):
            text += path.read_text(encoding="utf-8")
    return text


def names_without_a_thing(sources):
    page = sources / "docs" / "architecture.md"
    picture = sources / "docs" / "request.svg"
    product = product_text(sources)
    quoted = re.findall(r"`([^`]+)`", page.read_text(encoding="utf-8"))
    shown = re.findall(r'font-size="11"[^>]*>([^<]+)<', picture.read_text(encoding="utf-8"))
    names = {name for text in shown for name in re.split(r"[:,] *", text)}
    if len(names) < 20:
        yield f"{picture}: shows {len(names)} names only"
    for name in sorted(set(quoted) | names):
        if "/" in name and " " not in name:
            if not (sources / name).exists():
                yield f"{page}: no file {name}"
        elif re.fullmatch(r"\w+", name) and name not in SYSTEM_NAMES:
            if not re.search(rf"\b{name}\b", product):
                yield f"{page}: nothing is called {name}"


def wrong_change_log(sources, version):
    text = (sources / "CHANGELOG.md").read_text(encoding="utf-8")
    headings = re.findall(r"^## (.*)$", text, re.MULTILINE)
    if not re.fullmatch(rf"\[{re.escape(version)}\] - \d{{4}}-\d\d-\d\d", headings[0]):
        yield f"CHANGELOG.md: its newest heading is '{headings[0]}', the version {version}"


def wrong_versions(sources, version):
    major_and_minor = ".".join(version.split(".")[:2])
    for name, pattern, expected in (
            ("README.md", r"find_package\(corvella ([\d.]+) ", major_and_minor),
            ("docs/automated.md", r"`corvella ([\d.]+)`", version)):
        found = re.findall(pattern, (sources / name).read_text(encoding="utf-8"))
        if not found or set(found) != {expected}:
            yield f"{name}: tells of the versions {found}, not of {expected}"


def unnamed_examples(sources):
    links = links_of(sources / "README.md")
    for path in files_of(sources / "examples", ".cpp", ".php"):
        name = path.relative_to(sources).as_posix()
        if name not in links:
            yield f"README.md: does not name {name}"


def main():
    sources, version = pathlib.Path(sys.argv[1]), sys.argv[2]
    complaints = [*broken_links(sources), *names_without_a_thing(sources),
                  *wrong_change_log(sources, version), *wrong_versions(sources, version),
                  *unnamed_examples(sources)]
    for complaint in complaints:
        print(complaint)
    return 1 if complaints else 0


sys.exit(main())
