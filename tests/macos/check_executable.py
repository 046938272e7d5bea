"""The Mach-O file itself: what it is, what it needs, what it offers."""

import re

import mach_o
from expected import CPU_TYPES, LIBRARY_VERSIONS, MINIMUM_VERSIONS, OWN_EXPORTS, lines


def check_kind(report, path, arch, title):
    fields = mach_o.fields(path)
    report.equal(f"{title}: is an executable", fields["FileType"].split()[0], "Executable")
    report.equal(f"{title}: is for {arch} alone", fields["CpuType"].split()[0], CPU_TYPES[arch])
    version = fields.get("Version") or fields.get("MinOS")
    report.equal(f"{title}: needs macOS {MINIMUM_VERSIONS[arch]}", version, MINIMUM_VERSIONS[arch])
    wanted = {"MH_PIE", "MH_TWOLEVEL", "MH_DYLDLINK", "MH_NOUNDEFS"}
    report.check(f"{title}: can be placed anywhere and names the library of each symbol",
                 wanted <= fields["Flags"], [sorted(fields["Flags"])])
    commands = mach_o.load_commands(path)
    report.equal(f"{title}: has one entry point", commands.count("LC_MAIN"), 1)
    report.check(f"{title}: searches no folder of its own for libraries",
                 "LC_RPATH" not in commands, commands)


def check_libraries(report, path, title, wanted):
    report.same_names(f"{title}: links the system's libraries and frameworks, no others",
                      mach_o.libraries(path), wanted)
    versions = mach_o.library_versions(path)
    report.equal(f"{title}: has the versions of them that Apple's linker would note", versions,
                 {name: LIBRARY_VERSIONS.get(name) for name in versions})


def check_exports(report, path, title, program):
    wanted = set(lines("exports")) | set(OWN_EXPORTS[program])
    missing = wanted - mach_o.exports(path)
    report.check(f"{title}: exports the {len(wanted)} names that others rely on", not missing,
                 [f"missing: {name}" for name in sorted(missing)])


def check_undefined(report, paths, arch):
    """All programs together: what they take from the system is what has been reviewed."""
    found = set()
    for path in paths:
        found |= {f"{symbol} {library}" for symbol, library in mach_o.undefined(path)}
    expected = set()
    for line in lines("undefined"):
        symbol, library, *only = line.split()
        if not only or arch in only:
            expected.add(f"{symbol} {library}")
    report.same_names(f"{arch}: symbols taken from the system are those in expected/undefined",
                      found, expected)


def check_names(report, path, title):
    content = path.read_bytes()
    shared_objects = set(re.findall(rb"[\w./+-]+\.so(?:\.[\d.]+)?(?=[\0\s\"'])", content))
    report.check(f"{title}: names no .so file", not shared_objects, sorted(shared_objects))
    folder = str(mach_o.SOURCE).encode()
    report.check(f"{title}: names no folder of the machine that built it", folder not in content)


def check_contents(report, path, title):
    check_names(report, path, title)
    content = path.read_bytes()
    marker = bytes.fromhex("".join(lines("tail_marker")))
    report.equal(f"{title}: the Tail marker compared with is whole", len(marker), 128)
    report.check(f"{title}: holds the Tail marker nowhere as one run of bytes",
                 marker not in content, [f"at offset {content.find(marker)}"])
    # Two neighbouring words in one place would be the start of such a run.
    pairs = [i for i in range(0, 120, 8) if marker[i:i + 16] in content]
    report.check(f"{title}: holds no two words of the Tail marker side by side", not pairs,
                 [f"words at offset {i} of the marker" for i in pairs])
    if "x86_64" in title:
        words = [marker[i:i + 8] in content for i in range(0, 128, 8)]
        report.equal(f"{title}: holds all sixteen words of the Tail marker in its code",
                     words.count(True), 16)
