"""Text files have no tab, no trailing blank, no carriage return, and end with one line feed."""
import tree

BINARY = (".png", ".gz", ".pyc")


def findings_of(path):
    content = tree.text(path)
    if content and (not content.endswith("\n") or content.endswith("\n\n")):
        yield f"{path}: does not end with one line feed"
    for number, line in enumerate(content.split("\n"), 1):
        if "\t" in line:
            yield f"{path}:{number}: a tab"
        if line != line.rstrip():
            yield f"{path}:{number}: a trailing blank or carriage return"


tree.finish([finding for path in tree.files() if not path.endswith(BINARY)
             for finding in findings_of(path)])
