#!/usr/bin/env python3
"""Inspects the macOS executables without running them.

Usage: tests/macos/inspect_macos.py [--arch x86_64|arm64]...
"""

import argparse
import sys

sys.dont_write_bytecode = True

import mach_o
from check_classes import check_classes
from check_bundle import check_bundles
from check_executable import (check_contents, check_exports, check_kind, check_libraries,
                              check_names, check_undefined)
from check_stubs import check_declarations, check_implemented, check_stub_symbols
from check_signature import check_signature
from check_warnings import check_warnings
from report import Report

PROGRAMS = ["launcher", "extractor"]
TOOL = "lzma64"  # what an installer carries beside them
BUILDS = {"x86_64": "build-macos", "arm64": "build-macos-arm64"}


def inspect_program(report, path, arch):
    title = f"{path.name} {arch}"
    check_kind(report, path, arch, title)
    check_libraries(report, path, title)
    check_exports(report, path, title, path.name)
    check_classes(report, path, arch, title)
    check_contents(report, path, title)
    if arch == "arm64":
        check_signature(report, path, title)


def inspect_tool(report, path, arch):
    title = f"{path.name} {arch}"
    check_kind(report, path, arch, title)
    report.same_names(f"{title}: links the system library alone", mach_o.libraries(path),
                      ["/usr/lib/libSystem.B.dylib"])
    check_names(report, path, title)
    if arch == "arm64":
        check_signature(report, path, title)


def inspect_build(report, arch):
    build = mach_o.SOURCE / BUILDS[arch]
    paths = [build / "bin" / program for program in PROGRAMS]
    for path in paths:
        inspect_program(report, path, arch)
    inspect_tool(report, build / "bin" / TOOL, arch)
    check_bundles(report, build, arch)
    check_undefined(report, paths, arch)
    check_stub_symbols(report, paths, arch)
    check_declarations(report, build)
    check_implemented(report, paths)
    check_warnings(report, build)


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--arch", action="append", choices=BUILDS)
    report = Report()
    for arch in parser.parse_args().arch or ["x86_64"]:
        inspect_build(report, arch)
    return report.finish()


if __name__ == "__main__":
    sys.exit(main())
