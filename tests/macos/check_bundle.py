"""Bundles packed on Linux with the macOS executables: whole, and made of exactly these."""

import os
import plistlib
import subprocess
import tempfile
import zipfile
from pathlib import Path

import mach_o

PACK = mach_o.SOURCE / "build/bin/quorvane-pack"

PROJECT = mach_o.SOURCE / "tests/data/packager/folders.toml"

LAUNCH = """
version = 6
class = "org.example.Main"
app_name = "Sample"
class_path = ["app.jar"]
"""

# The bundles that a project becomes, and the executable inside each.
BUNDLES = {
    "launcher": "launcher",
    "offline": "extractor",
    "online": "extractor",
}


# A search path without rcodesign, which would sign the executables.
NO_SIGNING = {**os.environ, "PATH": "/usr/bin:/bin"}


def run(*command):
    return subprocess.run([PACK, *command], stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                          text=True, env=NO_SIGNING)


def write(path, text, mode=0o644):
    path.parent.mkdir(parents=True, exist_ok=True)
    path.write_text(text)
    path.chmod(mode)


def write_jar(path):
    """A jar with the main class by its name alone."""
    path.parent.mkdir(parents=True, exist_ok=True)
    with zipfile.ZipFile(path, "w") as jar:
        jar.writestr("org/example/Main.class", b"")


def make_project(folder):
    """A project whose runtime is a macOS one by its layout."""
    write(folder / "quorvane.toml", PROJECT.read_text())
    write(folder / "launch.toml", LAUNCH)
    write(folder / "runtime/Contents/Home/bin/java", "java", 0o755)
    write(folder / "runtime/Contents/Home/lib/server/libjvm.dylib", "jvm")
    for component in ("app", "updater"):
        write_jar(folder / component / "app.jar")
        run("launchfile", "write", folder / "launch.toml", folder / component / "QuorvaneLaunch")
    run("key", "new", folder / "release.key")


def check_one(report, bundle, executable, title):
    contents = bundle / "Contents"
    with open(contents / "Info.plist", "rb") as file:
        info = plistlib.load(file)
    named = contents / "MacOS" / info["CFBundleExecutable"]
    report.check(f"{title}: its property list names its executable", named.is_file(), [named])
    report.check(f"{title}: the executable is the one that was built",
                 named.is_file() and named.read_bytes() == executable.read_bytes())
    report.check(f"{title}: the executable may be executed", named.stat().st_mode & 0o111 == 0o111)
    read = run("tail", "read", bundle)
    report.check(f"{title}: holds a Tail record that can be read", read.returncode == 0,
                 read.stdout.splitlines())


def check_carried_tool(report, bundle, tool, title):
    checked = run("verify", bundle)
    report.check(f"{title}: is an installer that would install", checked.returncode == 0,
                 checked.stdout.splitlines())
    tail = (bundle / "Contents/Resources/Tail").read_bytes()
    report.check(f"{title}: carries the lzma64 of its system", tool.read_bytes() in tail)


def check_bundles(report, build, arch):
    programs = build / "bin"
    with tempfile.TemporaryDirectory() as name:
        folder = Path(name)
        make_project(folder)
        packed = run("build", folder / "quorvane.toml", "--output", folder / "dist",
                     "--executables", programs, "--target", f"macos-{arch}", "--bundles",
                     "--launcher-bundle", "--no-cache")
        report.check(f"bundles {arch}: are packed", packed.returncode == 0,
                     packed.stdout.splitlines())
        for kind, executable in BUNDLES.items() if packed.returncode == 0 else ():
            title = f"{kind} bundle {arch}"
            bundle = folder / "dist/bundles" / f"macos-{arch}" / kind / "Sample.app"
            check_one(report, bundle, programs / executable, title)
            if executable == "extractor":
                check_carried_tool(report, bundle, programs / "lzma64", title)
