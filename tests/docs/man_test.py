"""man_test.py SOURCE_DIR BUILD_DIR VERSION: the man pages.

They are well-formed, name the version and are installed, and corvella(3) names every public
function and no other.
Status 77 without mandoc.
"""

import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

sys.path.insert(0, str(pathlib.Path(__file__).parent.parent))
import published  # noqa: E402

SECTIONS = {
    1: ("NAME", "SYNOPSIS", "DESCRIPTION", "ENVIRONMENT", "FILES", "EXIT STATUS", "EXAMPLES",
        "DIAGNOSTICS", "SEE ALSO", "STANDARDS", "HISTORY", "CAVEATS", "SECURITY CONSIDERATIONS"),
    3: ("NAME", "LIBRARY", "SYNOPSIS", "DESCRIPTION", "RETURN VALUES", "EXAMPLES", "SEE ALSO",
        "STANDARDS", "HISTORY", "CAVEATS"),
}


def page_of(build, section):
    """The page as it is installed: with the program's lists, where the build makes them."""
    generated = build / "tool" / "generate" / f"corvella.{section}"
    return generated if generated.exists() else build / "docs" / "man" / f"corvella.{section}"


def faults_of_form(page):
    """What mandoc has to say of a page, matters of style included. Which other pages this machine
    has, those of the layer too, and whether it keeps a list of them, is not the page's fault."""
    lint = subprocess.run(["mandoc", "-T", "lint", "-W", "all", page], stdout=subprocess.PIPE,
                          stderr=subprocess.STDOUT, text=True, timeout=60, check=False)
    for line in lint.stdout.splitlines():
        if not re.search(r"STYLE: referenced manual not found: Xr|: outdated mandoc\.db ", line):
            yield line


def installs(build, section):
    """Whether the build's rules put the page where man looks for it."""
    with tempfile.TemporaryDirectory() as prefix:
        for folder in ("docs", "tool"):
            script = build / folder / "cmake_install.cmake"
            subprocess.run(["cmake", f"-DCMAKE_INSTALL_PREFIX={prefix}", "-P", script],
                           capture_output=True, timeout=60, check=True)
        return (pathlib.Path(prefix) / f"share/man/man{section}/corvella.{section}").exists()


def complaints(sources, build, version):
    for section, titles in SECTIONS.items():
        page = page_of(build, section)
        if not page.exists():
            yield f"{page} is not built"
            return
        yield from faults_of_form(page)
        text = page.read_text(encoding="utf-8")
        if re.search(r"@\w+@", text):
            yield f"{page}: something is not filled in"
        if f"\n.Sh HISTORY\nThis page is that of version {version}.\n" not in text:
            yield f"{page}: another version than {version}"
        found = tuple(re.findall(r"^\.Sh (.*)$", text, re.MULTILINE))
        if found != titles:
            yield f"{page}: its sections are {found}"

        if not installs(build, section):
            yield f"corvella({section}) is not installed"

    page = build / "docs" / "man" / "corvella.3"
    described = set()
    for line in re.findall(r"^\.It (Fn .*)$", page.read_text(encoding="utf-8"), re.MULTILINE):
        described.update(re.findall(r"Fn (\w+)", line))
    # The hooks that come with the facility stand in a sentence.
    described.update(re.findall(r"^\.Fn (\w+)", page.read_text(encoding="utf-8"), re.MULTILINE))
    described.discard("free")
    declared = published.functions(sources, *published.FACES)
    for name in sorted(declared - described):
        yield f"{page}: does not name {name}"
    for name in sorted(described - declared):
        yield f"{page}: names {name}, which is no public function"


def main():
    if shutil.which("mandoc") is None:
        print("skipped: not installed: mandoc")
        return 77
    found = list(complaints(pathlib.Path(sys.argv[1]), pathlib.Path(sys.argv[2]), sys.argv[3]))
    for complaint in found:
        print(complaint)
    return 1 if found else 0


sys.exit(main())
