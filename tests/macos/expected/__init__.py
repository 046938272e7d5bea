"""What the inspection expects; the longer lists are text files beside this one."""

from pathlib import Path

FOLDER = Path(__file__).resolve().parent

CPU_TYPES = {"x86_64": "X86-64", "arm64": "Arm64"}
MINIMUM_VERSIONS = {"x86_64": "10.13", "arm64": "11.0"}
FRAMEWORKS = {"AppKit": "C", "CoreFoundation": "A", "CoreGraphics": "A", "Foundation": "C",
              "Security": "A"}
OWN_EXPORTS = {"launcher": ["main", "run"], "extractor": ["main"]}
LIBRARIES = ["/usr/lib/libSystem.B.dylib", "/usr/lib/libobjc.A.dylib"] + [
    f"/System/Library/Frameworks/{name}.framework/Versions/{version}/{name}"
    for name, version in FRAMEWORKS.items()]

# (compatibility version, current version) that Apple's linker records with the SDK of macOS 15.5; for
# libSystem, those in the .tbd file that the compiler brings.
LIBRARY_VERSIONS = {
    "libSystem": ("1.0.0", "1336.0.0"), "libobjc": ("1.0.0", "228.0.0"),
    "AppKit": ("45.0.0", "2575.60.5"), "CoreFoundation": ("150.0.0", "3502.1.255"),
    "CoreGraphics": ("64.0.0", "1889.5.3"), "Foundation": ("300.0.0", "3502.1.255"),
    "Security": ("1.0.0", "61439.120.27"),
}


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
