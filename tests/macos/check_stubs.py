"""The framework declarations hold what the sources use, and nothing else."""

import json
import re
import shlex
import subprocess
import tempfile
from concurrent.futures import ThreadPoolExecutor
from os import cpu_count
from pathlib import Path

import mach_o

SDK = mach_o.SOURCE / "platform/macos-sdk"


def stub_symbols(arch):
    """The symbols that the linker's stubs offer for `arch`, each with its library."""
    symbols = set()
    for path in SDK.rglob("*.tbd"):
        for entry in re.split(r"^  - ", path.read_text(), flags=re.M)[1:]:
            targets, *lists = re.findall(r"([\w-]+): \[([^\]]*)\]", entry)
            if f"{arch}-macos" not in re.split(r"[,\s]+", targets[1]):
                continue
            for kind, names in lists:
                prefix = "_OBJC_CLASS_$_" if kind == "objc-classes" else ""
                symbols |= {(prefix + name, path.stem) for name in re.split(r"[,\s]+", names) if name}
    return symbols


def check_stub_symbols(report, paths, arch):
    used = set()
    for path in paths:
        for symbol, library in mach_o.undefined(path):
            # A stub names a class once for the class and its metaclass.
            symbol = symbol.replace("_OBJC_METACLASS_$_", "_OBJC_CLASS_$_")
            if library != "libSystem":
                used.add((symbol, library))
    report.same_names(f"{arch}: the linker's stubs offer exactly the symbols that are used",
                      stub_symbols(arch), used)


def headers():
    return [path for path in SDK.rglob("*.h") if path.name != "sdk_api.h"]


def marked_lines(path, marker):
    """The numbers of the lines that end a declaration with `marker`."""
    return [number for number, line in enumerate(path.read_text().splitlines(), 1)
            if re.search(rf"\b{marker}\b", line)]


def all_compile_commands(build, language):
    """(path, folder, arguments) for this project's own sources."""
    for entry in json.loads((build / "compile_commands.json").read_text()):
        path = Path(entry["file"])
        ours = path.is_relative_to(mach_o.SOURCE) and not path.is_relative_to(build)
        if ours and path.suffix == language:
            yield path, entry["directory"], shlex.split(entry["command"])


def is_for_test(arguments):
    return arguments[arguments.index("-o") + 1].startswith("tests/")


def is_shipped(path):
    """Whether a source becomes a part of what runs on a user's machine."""
    folder, *rest = path.relative_to(mach_o.SOURCE).parts
    if folder == "tools":
        return rest[0] == "lzma64" or "/".join(rest) in (
            "formats/lzma.cpp", "system/interruption.cpp", "system/whole_file.cpp")
    return folder not in ("tests", "examples", "bench")


def compile_commands(build, language):
    """The same for the shipped files, except when compiled again as part of a test."""
    return (entry for entry in all_compile_commands(build, language)
            if is_shipped(entry[0]) and not is_for_test(entry[2]))


def compile_with(directory, arguments, *more):
    """Compiles into a discarded file; returns the status and the messages."""
    with tempfile.TemporaryDirectory() as folder:
        arguments = list(arguments)
        arguments[arguments.index("-o") + 1] = f"{folder}/object.o"
        done = subprocess.run([*arguments, *more], cwd=directory, capture_output=True, text=True)
    return done.returncode, done.stderr


def uses_in(command):
    """The (header, line) pairs of the declarations that one source uses."""
    path, directory, arguments = command
    _, messages = compile_with(
        directory, arguments, "-DSDK_REPORT_USES", "-Wno-error", "-ferror-limit=0",
        "-Werror=deprecated-declarations")
    found = re.findall(r"^(.+?):(\d+):\d+: note: .* marked deprecated here", messages, re.M)
    return {(Path(directory, header).resolve(), int(line)) for header, line in found}


def unused_declarations(path, used):
    start = 0
    for end in marked_lines(path, "SDK_API"):
        if not any(start < line <= end for line in used):
            text = path.read_text().splitlines()[end - 1].strip()
            yield f"{path.relative_to(mach_o.SOURCE)}:{end}: {text}"
        start = end


def sources_with_frameworks(build):
    """The Objective-C++ sources, and the plain ones of the platform."""
    yield from compile_commands(build, ".mm")
    for command in compile_commands(build, ".cpp"):
        if command[0].is_relative_to(mach_o.SOURCE / "platform"):
            yield command


def check_declarations(report, build):
    with ThreadPoolExecutor(cpu_count()) as pool:
        used = set().union(*pool.map(uses_in, sources_with_frameworks(build)))
    unused = []
    count = 0
    for path in headers():
        count += len(marked_lines(path, "SDK_API"))
        unused += unused_declarations(path, {line for header, line in used if header == path})
    report.check(f"each of the {count} declarations of platform/macos-sdk is used by a source",
                 count > 0 and not unused, unused)


def check_implemented(report, paths):
    """What a header declares as called by the framework is a method of one of the classes."""
    declared = set()
    for path in headers():
        for method in re.findall(r"^-[^;]*?SDK_IMPLEMENTED", path.read_text(), re.M):
            keywords = re.findall(r"(\w+):", method)
            declared.add("".join(f"{word}:" for word in keywords))
    methods = {method.split(" ")[1].rstrip("]") for path in paths
               for described in mach_o.objc_classes(path) for method in described.methods}
    report.check(f"each of the {len(declared)} methods that frameworks call is implemented",
                 declared and declared <= methods, sorted(declared - methods))
