#!/usr/bin/env python3
"""Checks the arrows between folders, which the sources' includes draw.

Usage: folders_test.py SOURCE_FOLDER CASE
"""
import collections
import pathlib
import re
import sys
import unittest

SOURCE = pathlib.Path(sys.argv[1]).resolve()
SPLIT = ("extractor", "launcher", "support", "tools")
# What the files of each folder may not include: what is above it, or an executable's own.
FORBIDDEN = {
    "support": ("archive/", "crypto/", "extractor/", "formats/", "launch/", "launcher/", "tools/"),
    "crypto": ("archive/", "extractor/", "formats/", "launch/", "launcher/", "tools/"),
    "formats": ("archive/", "crypto/", "extractor/", "launch/", "launcher/", "tools/"),
    "archive": ("extractor/", "launch/", "launcher/", "tools/"),
    "launcher": ("extractor/", "tools/"),
    "launch": ("extractor/", "launcher/arguments.h", "tools/"),
    "extractor": ("launcher/arguments.h", "tools/"),
    "tools": ("extractor/", "launcher/"),
}


def includes(folder):
    """Pairs of a source below the folder and what it includes, both by their paths from the root."""
    for path in sorted((SOURCE / folder).rglob("*")):
        if path.suffix in (".cpp", ".h", ".mm"):
            for name in re.findall(r'^#include "([^"]+)"', path.read_text(), re.MULTILINE):
                yield str(path.relative_to(SOURCE)), name


def arrows(pairs):
    """For each sub-folder the ones beside it that it includes, each with one include that shows it."""
    found = collections.defaultdict(dict)
    for path, name in pairs:
        source, target = path.split("/")[:-1], name.split("/")[:-1]
        if len(source) > 1 and len(target) > 1 and source[0] == target[0] and source[1] != target[1]:
            found[source[1]].setdefault(target[1], f"{path} includes {name}")
    return found


def circle(found):
    """The includes of one circle, or nothing."""
    def search(folder, way):
        for target, shown in found.get(folder, {}).items():
            if target == way[0][0]:
                return [*(step for _, step in way[1:]), shown]
            if target not in [name for name, _ in way]:
                result = search(target, [*way, (target, shown)])
                if result:
                    return result
        return []

    return next(filter(None, (search(folder, [(folder, "")]) for folder in list(found))), [])


class Folders(unittest.TestCase):
    def test_have_no_circles_beside_each_other(self):
        for folder in SPLIT:
            self.assertEqual([], circle(arrows(includes(folder))), folder)

    def test_take_nothing_from_above(self):
        taken = [f"{path} includes {name}" for folder, above in FORBIDDEN.items() for path, name in includes(folder)
                 if name.startswith(above)]
        self.assertEqual([], taken)

    def test_with_a_circle_are_found(self):
        pairs = [("a/x/1.h", "a/y/2.h"), ("a/y/2.cpp", "a/z/3.h"), ("a/z/3.h", "a/x/1.h"), ("a/w/4.h", "a/x/1.h")]
        self.assertEqual(3, len(circle(arrows(pairs))))
        self.assertEqual([], circle(arrows(pairs[:2] + pairs[3:])))


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], f"Folders.{sys.argv[2]}"])
