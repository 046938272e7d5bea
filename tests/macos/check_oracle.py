"""The framework declarations, and what the sources take from the C library, against what others generated
from the headers of Apple's SDK."""

import sys

import mach_o
from check_stubs import compile_commands
from expected import lines

FOLDER = mach_o.SOURCE / "build-macos/tools/oracle"
TOOLS = mach_o.SOURCE / "build-macos/tools/venv"
sys.path.insert(0, str(mach_o.SOURCE / "tests/macos/oracle"))


def missing_parts():
    """Why the comparison cannot be made, or None."""
    pinned = mach_o.SOURCE / "tests/macos/oracle/pinned"
    done = FOLDER / "sources.done"
    if not done.is_file() or done.read_bytes() != pinned.read_bytes():
        return "scripts/macos-oracle has not fetched what it compares with"
    try:
        import clang.cindex  # noqa: F401
    except ImportError:
        return "scripts/macos-oracle has not installed libclang"
    return None


def include_folders(commands):
    """The folders of other projects' headers that the build compiles with."""
    found = {argument for _, _, arguments in commands
             for option, argument in zip(arguments, arguments[1:]) if option == "-isystem"}
    return [part for folder in sorted(found) if "macos-sdk" not in folder for part in ("-isystem", folder)]


def check_oracle(report, build):
    reason = missing_parts()
    if reason:
        report.skip("the declarations are those of Apple's SDK", reason)
        return
    from compare_declarations import compare_declarations
    from compare_system import compare_system
    from compare_uses import compare_uses
    from declarations import declarations
    from findings import Findings
    from loaded import ARCHES, load
    from planted import MISTAKES, missed
    from source_reader import SourceReader

    oracles, findings = load(FOLDER), Findings()
    tools = next(TOOLS.glob("lib/python3*/site-packages/ziglang"))
    commands = [*compile_commands(build, ".cpp"), *compile_commands(build, ".mm")]
    paths = sorted({path for path, _, _ in commands})
    for arch in ARCHES:
        reader = SourceReader(mach_o.SOURCE, tools, arch)
        compare_declarations(declarations(reader), oracles["sdk"][arch], oracles["crates"], arch, findings)
        compare_uses([path for path in paths if path.suffix == ".mm"], reader, include_folders(commands),
                     oracles["sdk"][arch], oracles["crates"], findings)
        compare_system(paths, reader, oracles["libc"][arch], findings)
    count = sum(findings.compared.values())
    report.check(f"{count} points of the declarations are as in Apple's SDK", count and not findings.mismatches,
                 findings.mismatches)
    expected = set(lines("oracle_notes"))
    report.same_names("what the oracles do not know, deprecate or call new is in expected/oracle_notes",
                      findings.notes, expected)
    overlooked = list(missed(mach_o.SOURCE, tools, "arm64", oracles["sdk"]["arm64"], oracles["crates"],
                             expected))
    report.check(f"each of the {len(MISTAKES)} planted mistakes in the declarations is found", not overlooked,
                 overlooked)
