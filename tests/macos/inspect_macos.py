#!/usr/bin/env python3
"""Inspects the macOS executables without running them.

Usage: tests/macos/inspect_macos.py [--arch x86_64|arm64]... [--tests]
"""

import argparse
import os
import sys
from pathlib import Path

sys.dont_write_bytecode = True
os.environ["PYTHONDONTWRITEBYTECODE"] = "1"

# The Python that has libclang and lief; without it the checks that need them are skipped.
READERS = Path(__file__).resolve().parents[2] / "build-macos/tools/oracle/venv/bin/python"
if __name__ == "__main__" and READERS.is_file() and Path(sys.executable) != READERS:
    os.execv(READERS, [READERS, *sys.argv])

import mach_o
from check_classes import check_classes
from check_layout import check_image_info, check_layout, check_layout_reader, check_second_reader
from check_oracle import check_oracle
from check_bundle import check_bundles
from check_executable import (check_contents, check_exports, check_kind, check_libraries,
                              check_names, check_undefined)
from check_stubs import check_declarations, check_implemented, check_stub_symbols
from check_signature import check_seal_reader, check_signature
from check_warnings import check_warnings
from check_tests import check_tests
from check_workflow import check_workflow
from expected import LIBRARIES
from report import Report

PROGRAMS = ["launcher", "extractor"]
TOOL = "lzma64"  # what an installer carries beside them
BUILDS = {"x86_64": "build-macos", "arm64": "build-macos-arm64"}


def inspect_program(report, path, arch):
    title = f"{path.name} {arch}"
    check_kind(report, path, arch, title)
    check_layout(report, path, arch, title)
    check_image_info(report, path, title)
    check_second_reader(report, path, arch, title)
    check_libraries(report, path, title, LIBRARIES)
    check_exports(report, path, title, path.name)
    check_classes(report, path, arch, title)
    check_contents(report, path, title)
    if arch == "arm64":
        check_signature(report, path, title)


def inspect_tool(report, path, arch):
    title = f"{path.name} {arch}"
    check_kind(report, path, arch, title)
    check_layout(report, path, arch, title)
    check_second_reader(report, path, arch, title)
    check_libraries(report, path, title, ["/usr/lib/libSystem.B.dylib"])
    check_names(report, path, title)
    if arch == "arm64":
        check_signature(report, path, title)


def inspect_build(report, arch, with_tests):
    build = mach_o.SOURCE / BUILDS[arch]
    paths = [build / "bin" / program for program in PROGRAMS]
    for path in paths:
        inspect_program(report, path, arch)
    inspect_tool(report, build / "bin" / TOOL, arch)
    check_layout_reader(report, build / "bin" / TOOL, arch)
    check_bundles(report, build, arch)
    check_undefined(report, [*paths, build / "bin" / TOOL], arch)
    check_stub_symbols(report, paths, arch)
    check_declarations(report, build)
    check_implemented(report, paths)
    check_warnings(report, build)
    check_oracle(report, build)
    if with_tests:
        check_tests(report, build)


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--arch", action="append", choices=BUILDS)
    parser.add_argument("--tests", action="store_true", help="compile and link the tests for macOS, too")
    arguments = parser.parse_args()
    report = Report()
    check_seal_reader(report)
    check_workflow(report)
    for arch in arguments.arch or ["x86_64"]:
        inspect_build(report, arch, arguments.tests)
    return report.finish()


if __name__ == "__main__":
    sys.exit(main())
