#!/usr/bin/env python3
"""Runs scripts/setup with package tools that are scripts, as on several systems.

Usage: setup_test.py SOURCE_FOLDER CASE
"""
import os
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

SOURCE = pathlib.Path(sys.argv[1]).resolve()

TOOLS = {
    "dpkg-query": 'for name; do :; done; grep -qxF -- "$name" "$FAKES/installed" && echo "install ok installed"',
    "apt-cache": 'case $1 in pkgnames) grep -F -- "$2" "$FAKES/known" ;;'
                 ' depends) printf "clang\\n  Depends: clang-%s\\n" "$(cat "$FAKES/clang")" ;; esac',
    "apt-get": 'echo "$*" >> "$FAKES/asked"',
    "id": "echo 0",
    "cargo": "true",
}


def listed():
    """The packages that the script lists, which are Debian 12's."""
    text = (SOURCE / "scripts/setup").read_text()
    block = re.search(r"^packages=\((.*?)^\)", text, re.DOTALL | re.MULTILINE).group(1)
    return [word for line in block.splitlines() if not line.strip().startswith("#") for word in line.split()]


NEWER = {"gnustep-back0.29-cairo": "gnustep-back0.31-cairo", "openjdk-17-jdk": "openjdk-25-jdk",
         "libclang-rt-14-dev": "libclang-rt-19-dev"}


def of_another_release():
    return [NEWER.get(package, package) for package in listed()]


class SetupTest(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.addCleanup(self.folder.cleanup)
        self.path = pathlib.Path(self.folder.name)
        for name, text in TOOLS.items():
            (self.path / name).write_text(f"#!/bin/sh\n{text}\n")
            (self.path / name).chmod(0o755)
        (self.path / "asked").write_text("")

    def run_setup(self, known, installed, clang="14"):
        (self.path / "known").write_text("\n".join(known) + "\n")
        (self.path / "installed").write_text("\n".join(installed) + "\n")
        (self.path / "clang").write_text(clang)
        environment = dict(os.environ, FAKES=str(self.path), PATH=f"{self.path}:{os.environ['PATH']}")
        return subprocess.run([SOURCE / "scripts/setup"], env=environment, capture_output=True, text=True,
                              timeout=50, check=False)

    def installed_by_it(self):
        lines = (self.path / "asked").read_text().splitlines()
        return [word for line in lines if line.startswith("install ") for word in line.split()[1:]
                if not word.startswith("-")]

    def test_installs_nothing_where_everything_is_installed(self):
        result = self.run_setup(listed(), listed())
        self.assertEqual((0, "", ""), (result.returncode, result.stdout, result.stderr))
        self.assertEqual("", (self.path / "asked").read_text())

    def test_installs_what_debian_12_lacks(self):
        known = listed() + ["gnustep-back0.31-cairo", "openjdk-25-jdk", "libclang-rt-19-dev"]
        absent = ["gnustep-back0.29-cairo", "openjdk-17-jdk", "libclang-rt-14-dev", "g++"]
        result = self.run_setup(known, [package for package in listed() if package not in absent], "19")
        self.assertEqual(0, result.returncode, result.stderr)
        self.assertEqual(sorted(absent), sorted(self.installed_by_it()))

    def test_takes_the_packages_of_another_release(self):
        older = ["gnustep-back0.30-cairo", "openjdk-21-jdk", "libclang-rt-18-dev"]
        result = self.run_setup(of_another_release() + older, [], "19")
        self.assertEqual(0, result.returncode, result.stderr)
        self.assertEqual(sorted(of_another_release()), sorted(self.installed_by_it()))

    def test_takes_them_for_installed_too(self):
        result = self.run_setup(of_another_release(), of_another_release(), "19")
        self.assertEqual(0, result.returncode, result.stderr)
        self.assertEqual([], self.installed_by_it())

    def test_names_a_package_that_a_system_does_not_have(self):
        known = [package for package in listed() if package not in ("libtomlplusplus-dev", "xdotool")]
        result = self.run_setup(known, [])
        self.assertEqual(1, result.returncode)
        self.assertRegex(result.stderr, r"^setup: .* has no package libtomlplusplus-dev xdotool; this script is "
                                        r"tried on Debian 12 alone\. Install what takes its place, and then build ")
        self.assertEqual([], self.installed_by_it())


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], f"SetupTest.{sys.argv[2]}"])
