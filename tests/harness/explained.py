"""Lists of source lines with a reason each: paragraphs of a file's name, the line's text, what
about it is explained, and the reason. Lines that begin with # are remarks."""


def read_explained(path):
    """The reasons by (file, line text, what)."""
    explained = {}
    for paragraph in path.read_text().split("\n\n"):
        lines = [line.strip() for line in paragraph.splitlines() if not line.startswith("#")]
        if not lines:
            continue
        if len(lines) < 4:
            raise ValueError(f"{path}: a paragraph without a reason: {lines}")
        name = tuple(lines[:3])
        if name in explained:
            raise ValueError(f"{path}: twice: {name}")
        explained[name] = " ".join(lines[3:])
    return explained
