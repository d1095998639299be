"""The mutants of a C++ source: one small change each, on the same lines as the original.

The sources are read token by token. What clang-format guarantees tells an operator from the rest:
a binary operator has white space on both sides, angle brackets of a template and the marks of
pointers and references have not.
"""

import dataclasses
import re

TOKEN = re.compile(r"""
    (?P<comment>//[^\n]*|/\*.*?\*/)
  | (?P<directive>^[ \t]*\#(?:[^\n\\]|\\.|\\\n)*)
  | (?P<string>R"(?P<mark>[^()\\\s]*)\(.*?\)(?P=mark)"|"(?:\\.|[^"\\\n])*")
  | (?P<character>'(?:\\.|[^'\\\n])+')
  | (?P<number>\.?[0-9](?:[eE][+-]|[\w.])*)
  | (?P<word>[A-Za-z_]\w*)
  | (?P<space>\s+)
  | (?P<operator><<=|>>=|\.\.\.|<<|>>|<=|>=|==|!=|&&|\|\||\+\+|--|->|::|[-+*/%&|^]=|.)
""", re.X | re.S | re.M)

# What stands for what: comparisons and their boundaries, arithmetic, bits, logic.
BINARY = {
    "<": ("<=", ">="), "<=": ("<", ">"), ">": (">=", "<="), ">=": (">", "<"),
    "==": ("!=",), "!=": ("==",),
    "+": ("-",), "-": ("+",), "*": ("/",), "/": ("*",), "%": ("*",),
    "&": ("|",), "|": ("&",), "^": ("&",), "<<": (">>",), ">>": ("<<",),
    "&&": ("||",), "||": ("&&",),
    "+=": ("-=",), "-=": ("+=",), "*=": ("/=",), "/=": ("*=",), "%=": ("*=",),
    "&=": ("|=",), "|=": ("&=",), "<<=": (">>=",), ">>=": ("<<=",),
}
WORDS = {"true": "false", "false": "true"}
OPENING = {"(": ")", "[": "]", "{": "}"}

# What a statement may not begin with to be worth removing: it would say nothing, or not compile.
KEPT_STATEMENTS = {"using", "static_assert", "typedef", "struct", "enum"}


@dataclasses.dataclass(frozen=True)
class Token:
    kind: str
    text: str
    start: int

    @property
    def end(self):
        return self.start + len(self.text)


@dataclasses.dataclass(frozen=True)
class Mutant:
    """A change of text[start:end]. The name of a mutant outlives changes elsewhere in its file."""
    file: str
    line: int       # counted from 1
    line_text: str  # of the original, without the blanks around it
    change: str     # such as "< -> <="
    number: int     # among those of the same line text and change in the file, from 1
    start: int
    end: int
    replacement: str

    @property
    def name(self):
        return (self.file, self.line_text, self.change, self.number)

    def apply(self, text):
        return text[:self.start] + self.replacement + text[self.end:]


def tokens_of(text):
    return [Token(found.lastgroup, found.group(), found.start()) for found in TOKEN.finditer(text)]


def blanked(text):
    """The text as white space of as many lines."""
    return re.sub(r"[^\n]", " ", text)


class Source:
    """The tokens that mean something, what encloses each, and whether it is inside a function."""

    def __init__(self, text):
        self.text = text
        self.tokens = [token for token in tokens_of(text)
                       if token.kind not in ("comment", "space", "directive")]
        self.partner = {}
        self.enclosing = []   # for each token the index of the bracket around it, or None
        self.is_block = set()  # indices of braces around statements
        self.ignored = set()  # indices of tokens in attributes and templates' heads
        self._match()
        self._ignore()

    def _match(self):
        stack = []
        for index, token in enumerate(self.tokens):
            closes = stack and token.text == OPENING[self.tokens[stack[-1]].text]
            if closes and token.kind == "operator":
                self.partner[stack[-1]] = index
                self.partner[index] = stack.pop()
            self.enclosing.append(stack[-1] if stack else None)
            if token.kind == "operator" and token.text in OPENING:
                if token.text == "{" and self._opens_block(index):
                    self.is_block.add(index)
                stack.append(index)

    def _opens_block(self, index):
        before = self.word_before(index)
        inside = self.enclosing[index] in self.is_block
        if before in (")", "else", "do", "try", "noexcept"):
            return True
        if before == "]":  # a lambda's, not an array's
            return self.text_at(self.partner[index - 1] - 1) in ("(", ",", "=", "return")
        if before in (";", "{", "}", ":"):
            return inside
        # A lambda's return type.
        before_brace = self.text[:self.tokens[index].start].rstrip()
        return re.search(r"\) -> [\w: *]+$", before_brace) is not None

    def _ignore(self):
        for index, token in enumerate(self.tokens):
            if token.text in ("__attribute__", "[") and self.text_at(index + 1) in ("(", "["):
                first = index + 1
                if token.text == "[" and self.tokens[first].start != token.end:
                    continue
                self.ignored.update(range(index, self.partner.get(first, first) + 1))
            if token.text == "template":
                end = self.text.index(">", token.end)
                self.ignored.update(other for other in range(index, len(self.tokens))
                                    if self.tokens[other].start <= end)

    def text_at(self, index):
        return self.tokens[index].text if 0 <= index < len(self.tokens) else ""

    def word_before(self, index):
        return self.text_at(index - 1)

    def has_blanks_around(self, token):
        return self.text[token.start - 1].isspace() and self.text[token.end].isspace()


def changed_character(literal):
    """Another character than that of the literal."""
    body = literal[1:-1]
    if body == "\\0":
        return "'\\1'"
    if body.startswith("\\"):
        return "'x'"
    other = chr(ord(body) + 1)
    return "'~'" if other in "'\\\x7f" else f"'{other}'"


def number_changes(text):
    changes = [f"({text} + 1)"]
    if re.fullmatch(r"0+(\.0*)?[uUlLfF]*", text) is None:
        changes.append(f"({text} - 1)")
    return changes


def is_unary(source, index):
    """Whether the minus or plus at the index is a sign."""
    before = source.tokens[index - 1]
    return (not source.text[source.tokens[index].end].isspace()
            and (before.text in ("return", "case") or
                 before.kind == "operator" and before.text not in (")", "]")))


def token_changes(source, index):
    """Pairs of what a token becomes and how that is called."""
    token = source.tokens[index]
    if token.kind == "number":
        return [(new, f"{token.text} -> {new[1:-1]}") for new in number_changes(token.text)]
    if token.kind == "character":
        new = changed_character(token.text)
        return [(new, f"{token.text} -> {new}")]
    if token.text.startswith('R"'):
        return [('""' + "\n" * token.text.count("\n"), 'R"(...)" -> ""')]
    if token.kind == "string":
        new = '"x"' if token.text == '""' else '""'
        return [(new, f"{token.text} -> {new}")]
    if token.text in WORDS:
        return [(WORDS[token.text], f"{token.text} -> {WORDS[token.text]}")]
    if token.kind != "operator":
        return []
    if token.text in ("++", "--"):
        new = "--" if token.text == "++" else "++"
        return [(new, f"{token.text} -> {new}")]
    if token.text in ("!", "~") or token.text == "-" and is_unary(source, index):
        return [("", f"without {token.text}")]
    if token.text in BINARY and source.has_blanks_around(token):
        return [(new, f"{token.text} -> {new}") for new in BINARY[token.text]]
    return []


def negated_conditions(source):
    """Changes (start, end, replacement, name) that turn a condition round."""
    for index, token in enumerate(source.tokens):
        if token.text in ("if", "while") and source.text_at(index + 1) == "(":
            start = source.tokens[index + 1].end
            end = source.tokens[source.partner[index + 1]].start
            yield start, end, f"!({source.text[start:end]})", "condition negated"


def swapped_branches(source):
    """The two values of a conditional expression in each other's place."""
    for index, token in enumerate(source.tokens):
        if token.text != "?" or token.kind != "operator":
            continue
        depth, colon, at = 0, None, index + 1
        while at < len(source.tokens):
            text = source.text_at(at)
            if text in OPENING:
                at = source.partner[at]
            elif colon is None and text == "?":
                depth += 1
            elif colon is None and text == ":":
                colon = at if depth == 0 else None
                depth -= 1
            elif text in (")", "]", "}", ";", ",") :
                break
            at += 1
        first = source.text[token.end:source.tokens[colon].start].strip()
        start, end = source.tokens[colon].end, source.tokens[at - 1].end
        second = source.text[start:end].strip()
        whole = source.text[token.end:end]
        swapped = f" {second} : {first}".replace("\n", " ")
        yield token.end, end, swapped + "\n" * whole.count("\n"), "values of ?: swapped"


def removed_statements(source):
    for index, token in enumerate(source.tokens):
        if token.text != ";" or source.enclosing[index] not in source.is_block:
            continue
        first = index
        while True:
            before = source.text_at(first - 1)
            ends_statement = before == "}" and is_statement_end(source, first)
            if before in (")", "]", "}") and not ends_statement:
                first = source.partner[first - 1]
            elif before in (";", "{", "}") or before == ":" and is_label(source, first - 1):
                break
            else:
                first -= 1
        if source.text_at(first) in KEPT_STATEMENTS or first == index:
            continue
        start, end = source.tokens[first].start, token.end
        yield start, end, ";" + blanked(source.text[start + 1:end]), "statement removed"


def is_statement_end(source, after):
    """Whether the brace before the index closes a block, behind which a statement begins."""
    opening = source.partner[after - 1]
    if opening not in source.is_block:
        return False
    # A lambda's body is part of the statement around it.
    return source.text_at(after) not in (",", ")", ";", "(")


def is_label(source, colon):
    at = colon - 1
    while source.text_at(at) not in (";", "{", "}", ":", "?", "(", ""):
        if source.text_at(at) in ("case", "default"):
            return True
        at -= 1
    return False


def mutants_of(file, text):
    """All mutants of a source, in the order of their places."""
    source = Source(text)
    changes = []
    for index, token in enumerate(source.tokens):
        if index not in source.ignored:
            changes += [(token.start, token.end, new, name)
                        for new, name in token_changes(source, index)]
    changes += negated_conditions(source)
    changes += swapped_branches(source)
    changes += removed_statements(source)

    lines = text.split("\n")
    counts = {}
    mutants = []
    changes = sorted(changes, key=lambda change: change[:2] + change[3:])
    for start, end, replacement, name in changes:
        line = text.count("\n", 0, start) + 1
        line_text = lines[line - 1].strip()
        number = counts[line_text, name] = counts.get((line_text, name), 0) + 1
        mutants.append(Mutant(file, line, line_text, name, number, start, end, replacement))
    return mutants
