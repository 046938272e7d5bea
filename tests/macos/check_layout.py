"""How the file is laid out: its segments, its note of the oldest system, and what a second reader of
Mach-O files says of it."""

import re
import tempfile
from pathlib import Path

import mach_o
from expected import MINIMUM_VERSIONS

PAGE_SIZES = {"x86_64": 0x1000, "arm64": 0x4000}
# Apple's linker notes the oldest system in the older of the two ways where that is before 10.14.
VERSION_COMMANDS = {"x86_64": "LC_VERSION_MIN_MACOSX", "arm64": "LC_BUILD_VERSION"}
OLDEST_COMMANDS = ("LC_VERSION_MIN_MACOSX", "LC_VERSION_MIN_IPHONEOS", "LC_BUILD_VERSION")


def layout_problems(path, arch):
    """What is wrong with the segments and sections of a file, one text each."""
    page, end = PAGE_SIZES[arch], 0
    segments = mach_o.segments(path)
    for name, address, memory, offset, size in segments:
        # The last segment ends with the file.
        if memory % page or address % page or offset % page or (size % page and name != "__LINKEDIT"):
            yield f"{name} is not made of whole pages: {memory:#x} at {address:#x}, {size:#x} at {offset:#x}"
        if address < end:
            yield f"{name} begins inside of the segment before it"
        if size > memory:
            yield f"{name} has more in the file than in memory"
        end = address + memory
    if not segments:
        yield "there are no segments"


def check_layout(report, path, arch, title):
    problems = list(layout_problems(path, arch))
    report.check(f"{title}: its segments are whole pages, one behind the other", not problems, problems)
    commands = [command for command in mach_o.load_commands(path) if command in OLDEST_COMMANDS]
    report.equal(f"{title}: notes its oldest system once, as Apple's linker would", commands,
                 [VERSION_COMMANDS[arch]])


# Faults of a layout: a field of the segment command of __TEXT, and what is added to it.
FAULTS = {"an unrounded size in memory": (32, -0x10), "an unrounded size in the file": (48, -0x10),
          "an unrounded address": (24, 0x10), "a size that reaches into the next segment": (32, 0x10000000)}


def check_layout_reader(report, path, arch):
    """The check of the layout itself, with faults planted in a copy of a good file."""
    for title, (field, more) in FAULTS.items():
        content = bytearray(path.read_bytes())
        at = re.search(rb"__TEXT\0{10}", content).start() - 8 + field
        number = int.from_bytes(content[at:at + 8], "little") + more
        content[at:at + 8] = number.to_bytes(8, "little")
        with tempfile.NamedTemporaryFile() as file:
            Path(file.name).write_bytes(content)
            try:
                found = list(layout_problems(Path(file.name), arch))
            except mach_o.Unreadable:
                found = ["not read at all"]
        report.check(f"the check of the layout finds {title}", found)


def check_image_info(report, path, title):
    """The runtime reads one record of the file's Objective-C, of a version and flags."""
    sections = mach_o.sections(path, "__objc_imageinfo")
    report.equal(f"{title}: has one record about its Objective-C", sections, [8])


def check_second_reader(report, path, arch, title):
    try:
        import lief
    except ImportError:
        report.skip(f"{title}: a second reader finds it well-formed",
                    "scripts/macos-oracle has not installed lief")
        return
    lief.logging.disable()
    fat = lief.MachO.parse(str(path))
    report.equal(f"{title}: a second reader finds one program in it", fat.size if fat else None, 1)
    if not fat or fat.size != 1:
        return
    good, message = lief.MachO.check_layout(fat.at(0))
    report.check(f"{title}: a second reader finds it well-formed", good, [message])
    binary = fat.at(0)
    report.check(f"{title}: a second reader finds its entry point in its code", binary.has_entrypoint
                 and binary.section_from_virtual_address(binary.entrypoint).name == "__text")
    note = binary.build_version if binary.has_build_version else binary.version_min
    oldest = ".".join(str(n) for n in (note.minos if binary.has_build_version else note.version)[:2])
    report.equal(f"{title}: a second reader finds the oldest system", oldest, MINIMUM_VERSIONS[arch])
    found = {(symbol.name, binary_library(symbol)) for symbol in binary.imported_symbols
             if symbol.has_binding_info and symbol.binding_info.has_library}
    report.same_names(f"{title}: a second reader finds each symbol in the same library",
                      {f"{name} {library}" for name, library in found if library},
                      {f"{name} {library}" for name, library in mach_o.undefined(path)
                       if (name in {symbol for symbol, _ in found})})


def binary_library(symbol):
    return symbol.binding_info.library.name.rsplit("/", 1)[1].split(".")[0]
