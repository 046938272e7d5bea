#!/usr/bin/env python3
"""Checks that every import and every selector of the macOS executables was used in the suites' runs.

Usage: tests/macos/suites/check_coverage.py [--trace FILE]

The runner notes in FILE which functions the executables call and which selectors they send
(MACRUN_TRACE). What was not used has to be in unexercised.txt, with the reason; what is in there must
not have been used. Classes and constants are bound at every start, which fails without them; whether
anything then looks at one is not seen.
"""

import argparse
import re
import subprocess
import sys
from pathlib import Path

sys.dont_write_bytecode = True
HERE = Path(__file__).resolve().parent
sys.path.insert(0, str(HERE.parent))

import mach_o
from report import Report

MACRUN = mach_o.SOURCE / "build/bin/macrun"
TEXT = 0x100000000  # where the linker puts the first segment of an executable
PROGRAMS = ["launcher", "extractor", "lzma64"]


def imports(path, kind):
    """The functions or the data that the executable imports, as the runner tells them apart."""
    text = subprocess.run([MACRUN, "--imports", path], check=True, capture_output=True,
                          text=True).stdout
    return {f"import {name}" for name in re.findall(rf"^\w+ {kind} (\S+) ", text, re.M)}


def selectors(path):
    """What the executable sends, or names in an @selector expression."""
    text = mach_o.run("llvm-objdump", "--macho", "--section=__DATA,__objc_selrefs", path)
    data = path.read_bytes()
    for address in re.findall(r"^[0-9a-f]{16}\s+0x([0-9a-f]+)", text, re.M):
        start = int(address, 16) - TEXT  # the names are in the first segment
        yield f"selector {data[start:data.index(0, start)].decode()}"


def exercised(trace):
    with open(trace, errors="backslashreplace") as lines:
        return {line.rstrip("\n") for line in lines}


def listed(path):
    """The names of the list, each below the reason that holds for it."""
    names, reason = set(), ""
    for line in path.read_text().splitlines():
        if line.startswith("#"):
            reason = line
        elif line.strip():
            if not reason:
                sys.exit(f"{path}: no reason for {line}")
            names.add(line)
        else:
            reason = ""
    return names


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--trace", type=Path, default=mach_o.SOURCE / "build/run-records/trace")
    parser.add_argument("--bin", type=Path, default=mach_o.SOURCE / "build-macos/bin")
    options = parser.parse_args()
    used = exercised(options.trace)
    unexercised = listed(HERE / "unexercised.txt")
    report = Report()
    every = {"imports": set(), "selectors": set()}
    bound = set()
    for program in PROGRAMS:
        every["imports"] |= imports(options.bin / program, "function")
        bound |= imports(options.bin / program, "data")
        if program != "lzma64":
            every["selectors"] |= set(selectors(options.bin / program))
    for kind, names in every.items():
        ours = {name for name in unexercised if name.startswith(kind[:-1] + " ")}
        report.check(f"{len(names & used)} of {len(names)} {kind} are exercised, the others listed",
                     names and names - used <= ours, sorted(names - used - ours))
        report.check(f"none of the {len(ours)} listed {kind} is exercised, or used no more",
                     not ours - (names - used), sorted(ours - (names - used)))
    print(f"      {len(bound)} classes and constants are bound at each start")
    return report.finish()


if __name__ == "__main__":
    sys.exit(main())
