"""What the inspection expects; the longer lists are text files beside this one."""

from pathlib import Path

FOLDER = Path(__file__).resolve().parent

CPU_TYPES = {"x86_64": "X86-64", "arm64": "Arm64"}
MINIMUM_VERSIONS = {"x86_64": "10.13", "arm64": "11.0"}
FRAMEWORKS = {"AppKit": "C", "CoreFoundation": "A", "CoreGraphics": "A", "Foundation": "C"}
OWN_EXPORTS = {"launcher": ["main", "run"], "extractor": ["main"]}
LIBRARIES = ["/usr/lib/libSystem.B.dylib", "/usr/lib/libobjc.A.dylib"] + [
    f"/System/Library/Frameworks/{name}.framework/Versions/{version}/{name}"
    for name, version in FRAMEWORKS.items()]


def lines(name):
    """The lines of a list, without comments and empty lines."""
    text = (FOLDER / name).read_text().splitlines()
    return [line for line in text if line.strip() and not line.startswith("#")]


def classes():
    """Each class's name with its lines: itself, its variables, its methods."""
    described = {}
    for line in lines("classes"):
        if not line.startswith(" "):
            current = described[line.split(" ")[0]] = []
        current.append(line)
    return described
