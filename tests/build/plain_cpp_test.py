#!/usr/bin/env python3
"""Proves that a plain .cpp file of the product that reaches for Cocoa does not build.

Replays the build's own compile commands with small probe files in the place of their sources.
Usage: plain_cpp_test.py SOURCE_FOLDER BUILD_FOLDER CASE
"""
import json
import pathlib
import shlex
import subprocess
import sys
import tempfile
import unittest

PRODUCT = ("archive", "crypto", "extractor", "launch", "launcher", "platform", "support")
SOURCE = pathlib.Path(sys.argv[1]).resolve()
BUILD = pathlib.Path(sys.argv[2]).resolve()
POISON = str(SOURCE / "platform" / "no_cocoa.h")


def commands():
    """Yields each compiled file, relative to the source folder, its object and its command."""
    for entry in json.loads((BUILD / "compile_commands.json").read_text()):
        words = shlex.split(entry["command"])
        path = pathlib.Path(entry["file"]).resolve()
        if path.is_relative_to(SOURCE):
            yield path.relative_to(SOURCE), words[words.index("-o") + 1], words


def command_of(name):
    """The command that compiles a product file into the library."""
    for path, output, words in commands():
        if str(path) == name and not output.startswith("tests/"):
            return words
    raise AssertionError(f"the build does not compile {name}")


def system_folders(words):
    """The -isystem folders of a command, as options."""
    pairs = zip(words, words[1:])
    return [word for option, folder in pairs if option == "-isystem" for word in (option, folder)]


def compile_probe(text, like, extra=()):
    """Compiles a probe with the command of the file `like`; returns the status and the errors."""
    words = list(command_of(like))
    output = words.index("-o")
    del words[output:output + 2]
    suffix = pathlib.Path(like).suffix
    with tempfile.NamedTemporaryFile("w", suffix=suffix, dir=BUILD) as probe:
        probe.write(text)
        probe.flush()
        words[words.index("-c") + 1] = probe.name
        result = subprocess.run([*words, *extra, "-fsyntax-only", "-fmax-errors=5"], cwd=BUILD, text=True,
                                capture_output=True, timeout=60)
    return result.returncode, result.stderr


PLAIN = "support/text/strings.cpp"
COCOA = "support/files/move_item.mm"
FOUNDATION = "#include <Foundation/Foundation.h>\n"
APPKIT = "#include <AppKit/AppKit.h>\n"


class PlainCpp(unittest.TestCase):
    def test_every_product_file_is_compiled_with_the_names_poisoned(self):
        checked = 0
        for path, output, words in commands():
            if path.suffix == ".cpp" and path.parts[0] in PRODUCT and not output.startswith("tests/"):
                self.assertIn(POISON, words, f"{path} could include a Cocoa header")
                checked += 1
        self.assertGreater(checked, 20)

    def expect_poisoned(self, text):
        # The header itself must be found, or the failure would prove nothing.
        status, errors = compile_probe(text, PLAIN, system_folders(command_of(COCOA)))
        self.assertNotEqual(0, status, "it compiled")
        self.assertRegex(errors, r"attempt to use (a )?poisoned")
        self.assertNotIn("No such file", errors)

    def test_does_not_build_with_the_foundation_header(self):
        self.expect_poisoned(FOUNDATION)

    def test_does_not_build_with_the_application_kit_header(self):
        self.expect_poisoned(APPKIT)

    def test_does_not_build_with_a_cocoa_type_of_its_own(self):
        self.expect_poisoned("struct Bundle;\nusing CFBundleRef = Bundle*;\n")

    def test_builds_without_them(self):
        status, errors = compile_probe("int answer();\nint answer() { return 42; }\n", PLAIN,
                                       system_folders(command_of(COCOA)))
        self.assertEqual(0, status, errors)

    def test_is_the_only_kind_of_file_that_refuses_them(self):
        status, errors = compile_probe(FOUNDATION + APPKIT, COCOA)
        self.assertEqual(0, status, errors)


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], *(f"PlainCpp.{case}" for case in sys.argv[3:])])
