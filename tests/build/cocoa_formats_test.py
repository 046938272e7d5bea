#!/usr/bin/env python3
"""Refuses %s in the formats of Cocoa strings: Cocoa reads its C text in the system's
encoding, which on a Mac is not UTF-8. support/text/cocoa_text.h has the right way.

Usage: cocoa_formats_test.py SOURCE_FOLDER CASE
"""
import pathlib
import re
import sys
import unittest

SOURCE = pathlib.Path(sys.argv[1]).resolve()
FOLDERS = ("archive", "bench", "crypto", "examples", "extractor", "launch", "launcher", "platform", "support",
           "tests", "tools")
PRODUCT = ("archive", "crypto", "extractor", "launch", "launcher", "platform", "support")
SUFFIXES = (".mm", ".m", ".h")

PIECE = r'"(?:[^"\\\n]|\\.)*"'
LITERAL = re.compile(rf'(?:@\s*|CFSTR\s*\(\s*){PIECE}(?:\s*@?\s*{PIECE})*')
# A directive: %%, or flags, width, precision and length in front of the conversion.
DIRECTIVE = re.compile(r"%(?:%|(?:\d+\$)?[-+ #0']*(?:\*(?:\d+\$)?|\d+)?(?:\.(?:\*(?:\d+\$)?|\d+)?)?"
                       r"(?:hh|h|ll|l|q|L|j|z|t)?(?P<conversion>[@A-Za-z]))")


def offences(text):
    """The lines in which a Cocoa string, in one piece or several, has a %s."""
    for literal in LITERAL.finditer(text):
        joined = "".join(piece[1:-1] for piece in re.findall(PIECE, literal.group()))
        if any(found["conversion"] in ("s", "S") for found in DIRECTIVE.finditer(joined)):
            yield text.count("\n", 0, literal.start()) + 1


def sources():
    for folder in FOLDERS:
        for path in sorted((SOURCE / folder).rglob("*")):
            if path.suffix in SUFFIXES and path.is_file():
                yield path


class CocoaFormats(unittest.TestCase):
    def test_hold_no_c_text_in_any_source(self):
        found, literals = [], 0
        for path in sources():
            text = path.read_text()
            literals += len(LITERAL.findall(text))
            found += [f"{path.relative_to(SOURCE)}:{line}" for line in offences(text)]
        self.assertEqual([], found, "%s in the format of a Cocoa string")
        self.assertGreater(literals, 40, "the sources were not found")

    def test_is_read_by_one_helper_only(self):
        found = [str(path.relative_to(SOURCE)) for path in sources()
                 if path.relative_to(SOURCE).parts[0] in PRODUCT and "macos-sdk" not in path.parts
                 and "stringWithUTF8String" in path.read_text()]
        self.assertEqual(["support/text/cocoa_text.mm"], found, "use textFromUTF8() of support/text/cocoa_text.h")

    def test_are_refused_with_any_flags_width_and_length(self):
        for planted in ('NSLog(@"%s", text);', 'NSLog(@"a %-20s b", text);', 'NSLog(@"%.*s", 3, text);',
                        'NSLog(@"%2$s %1$@", a, text);', 'NSLog(@"100%%%s", text);', 'NSLog(@"%ls", wide);',
                        'NSLog(@"%S", wide);', 'NSLog(@"a" @"b %"\n  "5s", text);', 'NSLog(@"\\"%s\\"", text);',
                        'CFStringCreateWithFormat(NULL, NULL, CFSTR("%s"), text);'):
            with self.subTest(planted):
                self.assertEqual([2], list(offences("int first;\n" + planted + "\n")))

    def test_may_hold_everything_else(self):
        for harmless in ('NSLog(@"%@ %d %f %lu %c 5%", a);', 'NSLog(@"100%% sure");', 'NSLog(@"%%s");',
                         'printf("%s\\n", text);', 'NSLog(@"%@", a); printf("%s", text);', 'NSLog(@"%d seconds", 1);'):
            with self.subTest(harmless):
                self.assertEqual([], list(offences(harmless)))


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], *(f"CocoaFormats.{case}" for case in sys.argv[2:])])
