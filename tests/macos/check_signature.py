"""The ad-hoc signature that a Mac with an arm64 processor asks of every executable, and the reader of
signatures itself, with bundles that were sealed and broken for it."""

import hashlib
import plistlib
import struct
import tempfile
from pathlib import Path

import seal

ADHOC = 0x2


def check_signature(report, path, title):
    content = path.read_bytes()
    place = seal.signature_place(content)
    report.check(f"{title}: is signed", place is not None)
    if place is None:
        return
    offset, length = place
    report.equal(f"{title}: its signature is the file's end", offset + length, len(content))
    directories = list(seal.code_directories(content[offset:offset + length]))
    report.equal(f"{title}: its signature has one code directory", len(directories), 1)
    for directory in directories:
        report.check(f"{title}: its signature is ad hoc", directory.flags & ADHOC)
        report.equal(f"{title}: its signature covers all before itself", directory.limit, offset)
        report.equal(f"{title}: its signature hashes with SHA-256",
                     (directory.hash_type, directory.hash_size), (2, 32))
        wrong = directory.wrong_pages(content)
        report.check(f"{title}: every page's hash is there and right", not wrong, wrong)


# --- a bundle that is sealed here, so that there is something to break

PAGE = 0x1000
RULES = {"^Resources/": True, "^Resources/.*\\.lproj/locversion\\.plist$": {"omit": True, "weight": 1100.0},
         "^Info\\.plist$": {"omit": True, "weight": 20.0}}


def signed_program(program, info, sealed):
    """A file of one load command, the bytes `program`, and a signature of both."""
    limit = 48 + len(program)
    identifier = b"org.example.sealed\0"
    hashes = 44 + len(identifier) + 3 * 32
    slots = -(-limit // PAGE)
    length = hashes + 32 * slots
    total = 20 + length
    content = struct.pack("<8I", 0xFEEDFACF, 0x01000007, 3, 2, 1, 16, 0, 0)
    content += struct.pack("<4I", seal.LC_CODE_SIGNATURE, 16, limit, total) + program
    directory = struct.pack(">9I4BI", seal.CODE_DIRECTORY, length, 0x20001, ADHOC, hashes, 44, 3, slots, limit,
                            32, 2, 0, 12, 0) + identifier
    directory += hashlib.sha256(sealed).digest() + bytes(32) + hashlib.sha256(info).digest()
    directory += b"".join(hashlib.sha256(content[i:i + PAGE]).digest() for i in range(0, limit, PAGE))
    return content + struct.pack(">5I", seal.SUPER_BLOB, total, 1, 0, 20) + directory


def make_bundle(folder):
    """Contents of a bundle whose every part is sealed."""
    contents = folder / "Sealed.app/Contents"
    for name, text in {"Info.plist": plistlib.dumps({"CFBundleExecutable": "Sealed"}),
                       "Resources/Tail": b"tail", "Resources/en.lproj/locversion.plist": b"free",
                       "_CodeSignature/CodeResources": b"", "MacOS/Sealed": b""}.items():
        (contents / name).parent.mkdir(parents=True, exist_ok=True)
        (contents / name).write_bytes(text)
    (contents / "Resources/link").symlink_to("Tail")
    sealed = plistlib.dumps({"rules2": RULES, "files2": {
        "Resources/Tail": {"hash2": hashlib.sha256(b"tail").digest()}, "Resources/link": {"symlink": "Tail"}}})
    (contents / "_CodeSignature/CodeResources").write_bytes(sealed)
    (contents / "MacOS/Sealed").write_bytes(
        signed_program(bytes(range(256)) * 40, (contents / "Info.plist").read_bytes(), sealed))
    return contents


def flip(path, at):
    content = bytearray(path.read_bytes())
    content[at] ^= 1
    path.write_bytes(content)


def exchange_link(contents):
    (contents / "Resources/link").unlink()
    (contents / "Resources/link").symlink_to("/etc/passwd")


# What is done to the bundle, and what the reader has to say of it; the first two leave the seal whole.
BREAKS = {
    "nothing": (lambda contents: None, None),
    "a file that the rules leave out": (lambda c: flip(c / "Resources/en.lproj/locversion.plist", 0), None),
    "a sealed file": (lambda c: flip(c / "Resources/Tail", 0), "Resources/Tail is not as sealed"),
    "a sealed file that goes": (lambda c: (c / "Resources/Tail").unlink(), "Resources/Tail is missing"),
    "a link": (exchange_link, "Resources/link is not the sealed link"),
    "a file beside the others": (lambda c: (c / "Resources/more").write_text("x"),
                                 "Resources/more is not sealed"),
    "the last page": (lambda c: flip(c / "MacOS/Sealed", 0x2800), "MacOS/Sealed: page 2 is not as signed"),
    "the first page": (lambda c: flip(c / "MacOS/Sealed", 60), "MacOS/Sealed: page 0 is not as signed"),
    "the property list": (lambda c: (c / "Info.plist").write_bytes((c / "Info.plist").read_bytes() + b"\n"),
                          "MacOS/Sealed: its signature does not hold the Info.plist"),
    "the seal": (lambda c: (c / "_CodeSignature/CodeResources").write_bytes(
        (c / "_CodeSignature/CodeResources").read_bytes() + b"\n"),
                 "MacOS/Sealed: its signature does not hold the seal"),
    "the seal that goes": (lambda c: (c / "_CodeSignature/CodeResources").unlink(), "no files are sealed"),
}


def check_seal_reader(report):
    for title, (break_it, wanted) in BREAKS.items():
        with tempfile.TemporaryDirectory() as name:
            contents = make_bundle(Path(name))
            break_it(contents)
            found = list(seal.bundle_problems(contents.parent))
        report.equal(f"the reader of seals, with a change of {title}", found, [wanted] if wanted else [])
