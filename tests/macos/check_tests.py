"""Every source of the tests, the examples and the packager compiles for macOS, and their programs link, but
for what CMake leaves out on a Mac: those sources are in expected/left_out_on_a_mac."""

import json
import subprocess

import mach_o
from expected import lines

FOLDERS = ("tests", "examples", "tools")
TARGETS = ["tests/all", "examples/all", "packaging/all"]


def sources():
    """The committed sources of the folders."""
    listed = subprocess.run(["git", "ls-files", "--cached", "--others", "--exclude-standard", *FOLDERS],
                            cwd=mach_o.SOURCE, check=True, capture_output=True, text=True).stdout
    return {name for name in listed.splitlines() if name.endswith((".cpp", ".mm", ".m"))}


def compiled(build):
    """The sources that the build has commands for."""
    return {entry["file"].removeprefix(f"{mach_o.SOURCE}/")
            for entry in json.loads((build / "compile_commands.json").read_text())}


def in_folders(names, listed):
    """The names, with each listed folder and its slash in place of its contents."""
    folders = tuple(line for line in listed if line.endswith("/"))
    return {next((folder for folder in folders if name.startswith(folder)), name) for name in names}


def check_tests(report, build):
    listed = lines("left_out_on_a_mac")
    report.same_names(f"{build.name}: the sources left out on a Mac are in expected/left_out_on_a_mac",
                      in_folders(sources() - compiled(build), listed), listed)
    done = subprocess.run(["ninja", "-C", build, "-k", "0", *TARGETS], stdout=subprocess.PIPE,
                          stderr=subprocess.STDOUT, text=True)
    problems = [line for line in done.stdout.splitlines() if "error: " in line or line.startswith("FAILED")]
    report.check(f"{build.name}: the tests, the examples and the packager compile and link for macOS",
                 done.returncode == 0, problems or done.stdout.splitlines()[-5:])
