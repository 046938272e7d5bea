#!/usr/bin/env python3
"""Checks what binds a signed bundle together, without a Mac: every sealed file, every page of each program,
and the hashes by which the signature holds the property list and the seal. A bundle's signer is not looked
at.

Usage: tests/macos/seal.py BUNDLE.app     prints what is wrong, and ends with 1 then
"""

import hashlib
import plistlib
import re
import struct
import sys
from pathlib import Path

LC_CODE_SIGNATURE = 0x1D
SUPER_BLOB = 0xFADE0CC0
CODE_DIRECTORY = 0xFADE0C02
FAT = 0xCAFEBABE
MACH_O_64 = 0xCFFAEDFE  # as read in the other order of bytes
HASHES = {1: "sha1", 2: "sha256", 3: "sha256"}  # the third is cut to 20 bytes
INFO_SLOT, SEAL_SLOT = 1, 3


class CodeDirectory:
    """One code directory of a signature: which pages there are, and what else is bound to them."""

    def __init__(self, blob):
        self.blob = blob
        self.flags, self.hashes, identifier, self.special_slots, self.slots, self.limit = struct.unpack_from(
            ">IIIIII", blob, 12)
        self.hash_size, self.hash_type, _, self.page_shift = blob[36:40]
        self.identifier = blob[identifier:blob.index(0, identifier)].decode()

    def digest(self, content):
        return hashlib.new(HASHES[self.hash_type], content).digest()[:self.hash_size]

    def slot(self, number):
        """The hash of page `number`, or of what is bound to the pages where the number is negative."""
        start = self.hashes + number * self.hash_size
        return self.blob[start:start + self.hash_size]

    def wrong_pages(self, content):
        page = 1 << self.page_shift
        wanted = -(-self.limit // page)
        if self.slots != wanted:
            return [f"{self.slots} hashes for {wanted} pages"]
        return [i for i in range(self.slots)
                if self.digest(content[i * page:min((i + 1) * page, self.limit)]) != self.slot(i)]

    def binds(self, number, content):
        return number <= self.special_slots and self.slot(-number) == self.digest(content)


def programs(content):
    """The 64-bit programs in a Mach-O file for one or more processors."""
    if struct.unpack_from(">I", content)[0] != FAT:
        return [content]
    places = [struct.unpack_from(">II", content, 8 + 20 * i + 8)
              for i in range(struct.unpack_from(">I", content, 4)[0])]
    return [content[offset:offset + size] for offset, size in places]


def signature_place(content):
    """Offset and size of the signature in a 64-bit Mach-O file of one processor, or None."""
    if struct.unpack_from(">I", content)[0] != MACH_O_64:
        raise ValueError("not a 64-bit Mach-O file")
    at = 32
    for _ in range(struct.unpack_from("<I", content, 16)[0]):
        command, size, offset, length = struct.unpack_from("<IIII", content, at)
        if command == LC_CODE_SIGNATURE:
            return offset, length
        at += size
    return None


def code_directories(signature):
    """Each code directory of a signature; one may have more, for systems of different age."""
    magic, _, count = struct.unpack_from(">III", signature)
    if magic != SUPER_BLOB:
        raise ValueError(f"not a signature: {magic:#x}")
    for i in range(count):
        offset = struct.unpack_from(">I", signature, 16 + 8 * i)[0]
        magic, length = struct.unpack_from(">II", signature, offset)
        if magic == CODE_DIRECTORY:
            yield CodeDirectory(signature[offset:offset + length])


def program_problems(content, info, seal):
    place = signature_place(content)
    if place is None:
        yield "is not signed"
        return
    offset, length = place
    found = list(code_directories(content[offset:offset + length]))
    if not found:
        yield "has a signature without a code directory"
    for directory in found:
        if directory.limit != offset:
            yield f"is signed up to {directory.limit:#x}, and its signature is at {offset:#x}"
        yield from (f"page {page} is not as signed" for page in directory.wrong_pages(content))
        for name, number, text in (("Info.plist", INFO_SLOT, info), ("seal", SEAL_SLOT, seal)):
            if not directory.binds(number, text):
                yield f"its signature does not hold the {name}"


def is_left_out(name, rules):
    """Whether the heaviest of the rules that match says that a file is not sealed."""
    best = {"weight": -1}
    for pattern, rule in rules.items():
        rule = rule if isinstance(rule, dict) else {"omit": not rule}
        if re.search(pattern, name) and rule.get("weight", 1) > best["weight"]:
            best = {"weight": rule.get("weight", 1), **rule}
    return best["weight"] < 0 or best.get("omit", False)


def file_problems(contents, seal):
    sealed = plistlib.loads(seal)
    for name, entry in sealed["files2"].items():
        entry = entry if isinstance(entry, dict) else {"hash": entry}
        path = contents / name
        if "symlink" in entry:
            if not path.is_symlink() or str(path.readlink()) != entry["symlink"]:
                yield f"{name} is not the sealed link"
        elif not path.is_file() or path.is_symlink():
            if not entry.get("optional") and "cdhash" not in entry:
                yield f"{name} is missing"
        elif "hash2" in entry and hashlib.sha256(path.read_bytes()).digest() != entry["hash2"]:
            yield f"{name} is not as sealed"
    # What is inside of sealed code has a seal of its own.
    elsewhere = ("_CodeSignature/", *(f"{name}/" for name, entry in sealed["files2"].items()
                                      if isinstance(entry, dict) and "cdhash" in entry))
    for path in sorted(contents.rglob("*")):
        name = path.relative_to(contents).as_posix()
        outside = name.startswith(elsewhere) or (path.is_dir() and not path.is_symlink())
        if not outside and name not in sealed["files2"] and not is_left_out(name, sealed["rules2"]):
            yield f"{name} is not sealed"


def bundle_problems(bundle):
    """What is wrong with a signed bundle, one text each."""
    contents = Path(bundle) / "Contents"
    path = contents / "_CodeSignature/CodeResources"
    if not path.is_file():
        yield "no files are sealed"
        return
    seal, info = path.read_bytes(), (contents / "Info.plist").read_bytes()
    executable = f"MacOS/{plistlib.loads(info)['CFBundleExecutable']}"
    # The program itself is bound by its own signature.
    yield from (text for text in file_problems(contents, seal) if text != f"{executable} is not sealed")
    for content in programs((contents / executable).read_bytes()):
        yield from (f"{executable}: {text}" for text in program_problems(content, info, seal))


def main(arguments):
    problems = [text for bundle in arguments for text in bundle_problems(bundle)]
    print(*problems or ["as sealed"], sep="\n")
    return 1 if problems or not arguments else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
