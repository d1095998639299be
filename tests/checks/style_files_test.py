"""What .editorconfig and .clang-format say of indentation and of columns is the same."""
import configparser
import re

import tree


def editor_says():
    parser = configparser.ConfigParser()
    parser.read_string("[top]\n" + tree.text(".editorconfig"))
    every_file = parser["*"]
    return every_file["indent_size"], every_file["max_line_length"], every_file["indent_style"]


def formatter_says():
    style = dict(re.findall(r"^(\w+): *(\S+)$", tree.text(".clang-format"), re.MULTILINE))
    tabs = {"Never": "space"}.get(style.get("UseTab", "Never"), "tab")
    return style["IndentWidth"], style["ColumnLimit"], tabs


if editor_says() != formatter_says():
    tree.finish([f".editorconfig says {editor_says()}, .clang-format {formatter_says()}"])
tree.finish([])
