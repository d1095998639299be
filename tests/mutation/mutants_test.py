#!/usr/bin/env python3
"""Whether the mutants are what they are meant to be, and the list of survivors is current."""

import pathlib
import unittest

from build import product_files, programs_of, tests_of
from mutants import mutants_of
from survivors import read_survivors

TOP = pathlib.Path(__file__).resolve().parents[2]


def changes_of(body):
    """The changed texts of a function with this body, by the names of the changes."""
    text = f"int f()\n{{\n{body}\n}}\n"
    return {f"{mutant.change} [{mutant.number}]": mutant.apply(text).split("{\n", 1)[1][:-3]
            for mutant in mutants_of("f.cpp", text)}


def without_statements(body):
    """The texts of the body with one statement removed each, without blanks."""
    text = f"int f()\n{{\n{body}\n}}\n"
    return [mutant.apply(text).split("{\n", 1)[1][:-3].replace(" ", "")
            for mutant in mutants_of("f.cpp", text) if mutant.change == "statement removed"]


class Mutants(unittest.TestCase):
    def test_comparisons_get_the_boundary_and_the_opposite(self):
        self.assertEqual(changes_of("g(a < b);"), {
            "< -> <= [1]": "g(a <= b);", "< -> >= [1]": "g(a >= b);",
            "statement removed [1]": ";        "})

    def test_brackets_of_templates_and_marks_of_pointers_are_no_operators(self):
        for body in ("std::vector<char *> a;", "const char *const a = b;",
                     "g(static_cast<int>(a));", "std::unique_ptr<char, void (*)(char *)> a(b);",
                     "char &a = *b;"):
            self.assertEqual(list(changes_of(body)), ["statement removed [1]"], body)

    def test_comments_directives_and_attributes_stay(self):
        text = '// a < 1\n/* a\n + 1 */\n#include <a>\n#define B(x) \\\n    x + 1\n' \
               'int f(int) __attribute__((format(printf, 1, 2)));\n[[noreturn]] void g();\n'
        self.assertEqual(mutants_of("f.cpp", text), [])

    def test_numbers_move_by_one(self):
        self.assertEqual(changes_of("g(0, 7u);"), {
            "0 -> 0 + 1 [1]": "g((0 + 1), 7u);", "7u -> 7u + 1 [1]": "g(0, (7u + 1));",
            "7u -> 7u - 1 [1]": "g(0, (7u - 1));", "statement removed [1]": ";        "})

    def test_texts_and_characters_change(self):
        changes = changes_of("g(\"a < b\", \"\", 'x', '\\0', '\\n');")
        self.assertEqual(changes["\"a < b\" -> \"\" [1]"], "g(\"\", \"\", 'x', '\\0', '\\n');")
        self.assertEqual(changes["\"\" -> \"x\" [1]"], "g(\"a < b\", \"x\", 'x', '\\0', '\\n');")
        self.assertIn("'x' -> 'y' [1]", changes)
        self.assertIn("'\\0' -> '\\1' [1]", changes)
        self.assertIn("'\\n' -> 'x' [1]", changes)

    def test_a_raw_text_changes_whole_and_keeps_its_lines(self):
        changes = changes_of('a = R"(b "c" < 1)\n{;)" + d;')
        self.assertEqual(changes, {
            'R"(...)" -> "" [1]': 'a = ""\n + d;',
            "+ -> - [1]": 'a = R"(b "c" < 1)\n{;)" - d;',
            "statement removed [1]": ";" + " " * 16 + "\n" + " " * 9})
        changes = changes_of('g(R"x(a)" + 1)x");')
        self.assertEqual(changes, {
            'R"(...)" -> "" [1]': 'g("");', "statement removed [1]": ";" + " " * 17})

    def test_signs_and_negations_go(self):
        changes = changes_of("return !a == -b;")
        self.assertEqual(changes["without ! [1]"], "return a == -b;")
        self.assertEqual(changes["without - [1]"], "return !a == b;")

    def test_conditions_are_negated(self):
        changes = changes_of("while (a && b) {\n    ++c;\n}")
        self.assertEqual(changes["condition negated [1]"], "while (!(a && b)) {\n    ++c;\n}")
        self.assertEqual(changes["&& -> || [1]"], "while (a || b) {\n    ++c;\n}")

    def test_values_of_a_conditional_expression_are_swapped(self):
        changes = changes_of("g(a ? b(1, 2) : c, d);")
        self.assertEqual(changes["values of ?: swapped [1]"], "g(a ? c : b(1, 2), d);")
        changes = changes_of("return a ? b : c ? d : e;")
        self.assertEqual(changes["values of ?: swapped [1]"], "return a ? c ? d : e : b;")
        self.assertEqual(changes["values of ?: swapped [2]"], "return a ? b : c ? e : d;")

    def test_statements_are_removed_whole_and_keep_their_lines(self):
        self.assertEqual(without_statements("g(a,\n  [] { h(); });\nfor (;;) {\n    break;\n}"),
                         [";\n\nfor(;;){\nbreak;\n}",
                          "g(a,\n[]{;});\nfor(;;){\nbreak;\n}",
                          "g(a,\n[]{h();});\nfor(;;){\n;\n}"])

    def test_statements_behind_labels_are_removed_without_the_label(self):
        self.assertEqual(
            without_statements("switch (a) {\ncase 1:\n    b();\ndefault:\n    break;\n}"),
            ["switch(a){\ncase1:\n;\ndefault:\nbreak;\n}",
             "switch(a){\ncase1:\nb();\ndefault:\n;\n}"])

    def test_a_statement_behind_a_block_begins_behind_it(self):
        self.assertEqual(without_statements("if (a) {\n    b();\n}\nc = d{1};"),
                         ["if(a){\n;\n}\nc=d{1};", "if(a){\nb();\n}\n;"])

    def test_members_of_records_stay(self):
        self.assertEqual(mutants_of("f.h", "struct a {\n    int b;\n    char *c;\n};\n"), [])


class Programs(unittest.TestCase):
    LINKED = ("tool/corvella", "tests/tool/tool_tests", "tests/tool/tool_timeout_tests",
              "tests/tool/generate/tool_generate_tests", "tests/web/web_tests",
              "tests/platform/platform_tests", "tests/support/error/error_tests",
              "tests/failures/failure_loops_tests")

    def test_a_file_has_those_of_its_folder_but_the_real_waits(self):
        for file, programs in (
                ("tool/main.cpp", ["tests/tool/tool_tests"]),
                ("tool/generate/shell.cpp", ["tests/tool/generate/tool_generate_tests"]),
                ("tool/desktop_macos.cpp", ["tests/platform/platform_tests"]),
                ("support/error/hooks.cpp", ["tests/support/error/error_tests",
                                             "tests/failures/failure_loops_tests"]),
                ("web/url.cpp", ["tests/web/web_tests", "tests/platform/platform_tests",
                                 "tests/failures/failure_loops_tests"])):
            self.assertEqual(programs_of(file, self.LINKED), programs, file)

    def test_a_file_without_any_is_an_error(self):
        for file in ("tool/other/a.cpp", "platform/other/b.cpp"):
            with self.assertRaisesRegex(SystemExit, f"{file}: no test program in tests/"):
                programs_of(file, self.LINKED)

    def test_every_file_that_can_change_has_a_folder_with_one(self):
        for file in product_files(TOP):
            own = TOP / tests_of(file)[0] / "CMakeLists.txt"
            with self.subTest(file):
                self.assertTrue(own.exists() and "corvella_test(" in own.read_text() or
                                not mutants_of(file, (TOP / file).read_text()))


class Survivors(unittest.TestCase):
    def test_each_is_still_a_mutant(self):
        texts = {}
        for file, line_text, change, number in read_survivors():
            if file not in texts:
                text = (TOP / file).read_text()
                texts[file] = {mutant.name for mutant in mutants_of(file, text)}
            with self.subTest(file, line=line_text, change=change, number=number):
                self.assertTrue((file, line_text, change, number) in texts[file])


if __name__ == "__main__":
    unittest.main()
