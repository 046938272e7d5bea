#!/usr/bin/env python3
"""Holds over the product's sources that every failing end, and every start of a program, goes through one place.

Usage: one_end_test.py SOURCE_FOLDER CASE
"""
import pathlib
import re
import sys
import unittest

PRODUCT = ("archive", "crypto", "extractor", "launch", "launcher", "platform", "support")
SOURCE = pathlib.Path(sys.argv[1]).resolve()

# Ends of the process, and of which status; a call with 0 is not a failure.
ENDS = re.compile(r"(?<![\w.>])(?:std::|::)?(endProcess|exit|_exit|_Exit|quick_exit)\s*\(\s*([^)]*)\)")
# What a user asked for is no failure.
SUCCESS = ("0", "EXIT_SUCCESS", "kQuitStatus")
END_FILES = ("support/failure/failure.cpp", "platform/process_end.h", "platform/linux/process_end.cpp",
             "platform/macos/process_end.cpp")
# main() ends the process by returning.
RETURNS = re.compile(r"return\s+(EXIT_\w+)\s*;")

STARTS = re.compile(r"(?<![\w.>])(?:std::|::)?(posix_spawnp?|popen|system|v?fork|exec[lv]\w*)\s*\(")
START_FILE = "support/process/start_program.cpp"


def without_comments(text):
    """The text with the comments and the characters of texts blanked, line for line."""
    pattern = re.compile(r'//[^\n]*|/\*.*?\*/|"(?:\\.|[^"\\\n])*"', re.DOTALL)
    return pattern.sub(lambda match: re.sub(r"[^\n]", " ", match.group()), text)


def failing_ends(text):
    """The calls in a source that end the process with a failure."""
    code = without_comments(text)
    calls = [match.group() for match in ENDS.finditer(code) if match.group(2).strip() not in SUCCESS]
    return calls + [match.group() for match in RETURNS.finditer(code) if match.group(1) not in SUCCESS]


def starts(text):
    """The calls in a source that start a program."""
    return [match.group() for match in STARTS.finditer(without_comments(text))]


def sources():
    """Yields the product's sources: their names and texts."""
    for folder in PRODUCT:
        for path in sorted((SOURCE / folder).rglob("*")):
            name = str(path.relative_to(SOURCE))
            if path.suffix in (".cpp", ".h", ".mm", ".m") and not name.startswith("platform/macos-sdk/"):
                yield name, path.read_text()


class OneEnd(unittest.TestCase):
    def expect_none(self, find, allowed):
        found = {name: find(text) for name, text in sources()}
        self.assertGreater(len(found), 100)
        wrong = {name: calls for name, calls in found.items() if calls and name not in allowed}
        self.assertEqual({}, wrong)

    def test_no_source_but_one_ends_the_process_with_a_failure(self):
        self.expect_none(failing_ends, END_FILES)

    def test_no_source_but_one_starts_a_program(self):
        self.expect_none(starts, (START_FILE,))

    def test_finds_what_it_looks_for(self):
        for text in ("endProcess(EXIT_STATUS_FAILURE);", "exit(1);", "::_exit(status);", "std::exit(2);",
                     "return EXIT_STATUS_FAILURE;", "endProcess(launchJavaJNI(clazz));"):
            self.assertEqual(1, len(failing_ends(text)), text)
        for text in ("endProcess(0);", "endProcess(EXIT_SUCCESS);", "// exit(1)", '"exit(1)"', "on_exit(f, 0);",
                     "app.exit(1);", "skipExitHandlersSoFar();"):
            self.assertEqual([], failing_ends(text), text)
        for text in ("posix_spawn(&child);", "popen(a, b);", "execv(a, b);", "system(text);", "::fork();"):
            self.assertEqual(1, len(starts(text)), text)
        for text in ("posix_spawnattr_init(&a);", "startProgram(a);", "// system(x)", "executable(a);"):
            self.assertEqual([], starts(text), text)


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], *(f"OneEnd.{case}" for case in sys.argv[2:])])
