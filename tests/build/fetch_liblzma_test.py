#!/usr/bin/env python3
"""Runs scripts/fetch-liblzma with a small crate in liblzma's place and a cargo that is a script.

Usage: fetch_liblzma_test.py SOURCE_FOLDER CASE
"""
import hashlib
import io
import os
import pathlib
import shutil
import subprocess
import sys
import tarfile
import tempfile
import unittest

SOURCE = pathlib.Path(sys.argv[1]).resolve()

# It brings the archive that the case has prepared, if there is one, and notes that it was asked.
CARGO = """#!/bin/sh
[ "$1" != --version ] || exit 0
echo asked >> "$CASE/asked"
[ -f "$CASE/brought" ] || exit 1
mkdir -p "$CARGO_HOME/registry/cache/index"
cp "$CASE/brought" "$CARGO_HOME/registry/cache/index/small-1.0.0.crate"
"""


def crate(text):
    """An archive with one source file that holds `text`, and a file that is no source of liblzma's."""
    data = io.BytesIO()
    with tarfile.open(fileobj=data, mode="w:gz") as archive:
        for name in ("small-1.0.0/xz/src/liblzma/one.c", "small-1.0.0/build.rs"):
            entry = tarfile.TarInfo(name)
            entry.size = len(text)
            archive.addfile(entry, io.BytesIO(text))
    return data.getvalue()


class FetchLiblzmaTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.path = pathlib.Path(folder.name)
        for name in ("tree/scripts", "tree/cmake", "bin"):
            (self.path / name).mkdir(parents=True)
        for name in ("fetch-liblzma", "run-cargo"):
            shutil.copy(SOURCE / "scripts" / name, self.path / "tree/scripts" / name)
        self.write_cargo(CARGO)
        self.wanted = crate(b"int one;\n")
        self.pin(self.wanted)

    def write_cargo(self, text):
        (self.path / "bin/cargo").write_text(text)
        (self.path / "bin/cargo").chmod(0o755)

    def pin(self, archive):
        hash_ = hashlib.sha256(archive).hexdigest()
        (self.path / "tree/cmake/liblzma.pinned").write_text(f"small 1.0.0 {hash_}\n")

    def fetch(self, brought=None):
        if brought is not None:
            (self.path / "brought").write_bytes(brought)
        environment = dict(os.environ, CASE=str(self.path), CARGO_HOME=str(self.path / "home"),
                           PATH=f"{self.path / 'bin'}:{os.environ['PATH']}")
        return subprocess.run([self.path / "tree/scripts/fetch-liblzma", self.path / "out"], env=environment,
                              capture_output=True, text=True, timeout=50, check=False)

    def times_asked(self):
        asked = self.path / "asked"
        return len(asked.read_text().splitlines()) if asked.exists() else 0

    def laid_out(self):
        return sorted(str(path.relative_to(self.path / "out")) for path in (self.path / "out").rglob("*.*"))

    def test_lays_out_the_sources_alone(self):
        result = self.fetch(self.wanted)
        self.assertEqual(0, result.returncode, result.stderr)
        self.assertEqual(["src/liblzma/one.c"], self.laid_out())
        self.assertEqual("int one;\n", (self.path / "out/src/liblzma/one.c").read_text())

    def test_refuses_another_archive(self):
        result = self.fetch(crate(b"int two;\n"))
        self.assertEqual(1, result.returncode)
        self.assertIn("small-1.0.0.crate is not the archive that is pinned", result.stderr)
        self.assertFalse((self.path / "out").exists())

    def test_does_nothing_where_they_are(self):
        self.fetch(self.wanted)
        self.write_cargo("#!/bin/sh\nexit 1\n")
        shutil.rmtree(self.path / "home")
        result = self.fetch()
        self.assertEqual((0, "", ""), (result.returncode, result.stdout, result.stderr))

    def test_asks_cargo_once_for_several_folders(self):
        self.fetch(self.wanted)
        shutil.rmtree(self.path / "out")
        result = self.fetch()
        self.assertEqual((0, 1), (result.returncode, self.times_asked()))
        self.assertEqual(["src/liblzma/one.c"], self.laid_out())

    def test_replaces_those_of_another_version(self):
        self.fetch(self.wanted)
        newer = crate(b"int newer;\n")
        self.pin(newer)
        shutil.rmtree(self.path / "home")
        result = self.fetch(newer)
        self.assertEqual(0, result.returncode, result.stderr)
        self.assertEqual("int newer;\n", (self.path / "out/src/liblzma/one.c").read_text())

    def test_says_that_cargo_could_not_bring_it(self):
        result = self.fetch()
        self.assertEqual(1, result.returncode)
        self.assertIn("could not fetch the crate small 1.0.0 with cargo", result.stderr)
        self.assertFalse((self.path / "out").exists())


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], f"FetchLiblzmaTest.{sys.argv[2]}"])
