"""What LLVM's tools say about a Mach-O file."""

import re
import subprocess
from pathlib import Path

SOURCE = Path(__file__).resolve().parents[2]
LLVM = SOURCE / "build-macos/tools/llvm"


Unreadable = subprocess.CalledProcessError


def run(tool, *arguments):
    return subprocess.run([LLVM / tool, *arguments], check=True, capture_output=True,
                          text=True).stdout


def fields(path):
    """Single-valued fields of the file's header and of its minimum-version command."""
    text = run("llvm-readobj", "--file-headers", "--macho-version-min", path)
    return dict(re.findall(r"^ *(\w+): (.+)$", text, re.M)) | {
        "Flags": set(re.findall(r"\b(MH_\w+)", text))}


def load_commands(path):
    text = run("llvm-objdump", "--macho", "--private-headers", path)
    return re.findall(r"^ *cmd (LC_\w+)$", text, re.M)


def segments(path):
    """(name, address, size in memory, offset in the file, size in the file) of each segment."""
    text = run("llvm-objdump", "--macho", "--private-headers", path)
    pattern = (r"cmd LC_SEGMENT_64\n.*\n +segname (\S+)\n +vmaddr (\S+)\n +vmsize (\S+)\n"
               r" +fileoff (\d+)\n +filesize (\d+)")
    return [(name, int(address, 16), int(memory, 16), int(offset), int(size))
            for name, address, memory, offset, size in re.findall(pattern, text)]


def sections(path, name):
    """The sizes of the sections of that name."""
    text = run("llvm-objdump", "--macho", "--private-headers", path)
    return [int(size, 16) for size in
            re.findall(rf"sectname {name}\n +segname \S+\n +addr \S+\n +size (\S+)", text)]


def libraries(path):
    text = run("llvm-objdump", "--macho", "--dylibs-used", path)
    return re.findall(r"^\s+(/\S+) \(", text, re.M)


def library_versions(path):
    """The compatibility version and the current version of each library, by its short name."""
    text = run("llvm-objdump", "--macho", "--dylibs-used", path)
    found = re.findall(r"^\s+\S*/(\w+)\S* \(compatibility version (\S+), current version (\S+?)\)", text, re.M)
    return {name: (compatible, current) for name, compatible, current in found}


def exports(path):
    """The names that the file exports, demangled, without parameters."""
    text = run("llvm-objdump", "--macho", "--exports-trie", path)
    names = re.findall(r"^0x[0-9A-F]+ +(_\S+)", text, re.M)
    demangled = run("llvm-cxxfilt", "-_", *names).splitlines()
    # A name that is not mangled keeps the underscore that every name in C has.
    return {name.split("(")[0] if "(" in name else name[1:] for name in demangled}


def undefined(path):
    """Pairs of an undefined symbol and the library that it is taken from."""
    text = run("llvm-nm", "-m", "-u", path)
    return set(re.findall(r"external (\S+) \(from (\S+)\)", text))


class ObjcClass:
    def __init__(self, name, superclass):
        self.name = name
        self.superclass = superclass
        self.variables = []
        self.methods = []

    def lines(self):
        yield f"{self.name} : {self.superclass}"
        yield from (f"  {name} {type_}" for name, type_ in self.variables)
        yield from (f"  {method}" for method in self.methods)


def objc_classes(path):
    """The Objective-C classes of the file, with their variables and methods in file order."""
    text = run("llvm-objdump", "--macho", "--objc-meta-data", path)
    text = text.split("(__DATA_CONST,__objc_classlist) section")[1].split("Contents of (")[0]
    classes = []
    for block in re.split(r"^[0-9a-f]{16} 0x[0-9a-f]+ _OBJC_CLASS_\$_", text, flags=re.M)[1:]:
        name = block.split(None, 1)[0]
        parent = re.search(r"superclass 0x[0-9a-f]+ _OBJC_CLASS_\$_(\w+)", block).group(1)
        described = ObjcClass(name, parent)
        instance, _, meta = block.partition("Meta Class")
        described.methods = re.findall(r"imp (-\[.+\])", instance)
        described.methods += re.findall(r"imp (\+\[.+\])", meta)
        described.variables = re.findall(
            r"^\t\t\t *name 0x[0-9a-f]+ (\S+)\n\t\t\t *type 0x[0-9a-f]+ (\S+)", instance, re.M)
        classes.append(described)
    return classes
