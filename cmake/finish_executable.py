#!/usr/bin/env python3
"""Makes two things of a Mach-O executable what Apple's linker makes them, where the linker of the cross build
leaves them otherwise: segments are whole pages, for which the padding is in the file already, and of the
objects' records about their Objective-C, which are all the same, one is left. Where there is an ad-hoc
signature, the hashes of the pages are rewritten.

Usage: finish_executable.py EXECUTABLE
"""

import hashlib
import struct
import sys
from pathlib import Path

LC_SEGMENT_64 = 0x19
LC_CODE_SIGNATURE = 0x1D
CODE_DIRECTORY = 0xFADE0C02
PAGES = {0x01000007: 0x1000, 0x0100000C: 0x4000}  # x86-64, arm64


def commands(content):
    """(command, place) of each load command of a 64-bit file for one processor."""
    at = 32
    for _ in range(struct.unpack_from("<I", content, 16)[0]):
        command, size = struct.unpack_from("<II", content, at)
        yield command, at
        at += size


def round_segments(content):
    page = PAGES[struct.unpack_from("<I", content, 4)[0]]
    places = [at for command, at in commands(content) if command == LC_SEGMENT_64]
    for at, following in zip(places, [*places[1:], None]):
        memory, offset, size = struct.unpack_from("<QQQ", content, at + 32)
        memory = -(-memory // page) * page
        # The last segment is the one that ends with the file.
        if size and following is not None:
            size = min(-(-size // page) * page, struct.unpack_from("<Q", content, following + 40)[0] - offset)
        struct.pack_into("<QQQ", content, at + 32, memory, offset, size)


def keep_one_image_info(content):
    for command, at in commands(content):
        if command != LC_SEGMENT_64:
            continue
        for i in range(struct.unpack_from("<I", content, at + 64)[0]):
            section = at + 72 + 80 * i
            size, offset = struct.unpack_from("<QI", content, section + 40)
            if content[section:section + 16].rstrip(b"\0") != b"__objc_imageinfo" or size <= 8:
                continue
            if any(content[j:j + 8] != content[offset:offset + 8] for j in range(offset, offset + size, 8)):
                sys.exit("finish_executable: the objects' records about their Objective-C differ")
            struct.pack_into("<Q", content, section + 40, 8)


def code_directory(content):
    """The place of the code directory, or None where the file has no signature."""
    for command, at in commands(content):
        if command == LC_CODE_SIGNATURE:
            start = struct.unpack_from("<I", content, at + 8)[0]
            for i in range(struct.unpack_from(">I", content, start + 8)[0]):
                place = start + struct.unpack_from(">I", content, start + 16 + 8 * i)[0]
                if struct.unpack_from(">I", content, place)[0] == CODE_DIRECTORY:
                    return place
    return None


def update_hashes(content, directory):
    hashes = directory + struct.unpack_from(">I", content, directory + 16)[0]
    pages, limit = struct.unpack_from(">II", content, directory + 28)
    size, kind, _, shift = content[directory + 36:directory + 40]
    if (size, kind) != (32, 2):
        sys.exit("finish_executable: the signature does not hash with SHA-256")
    for i in range(pages):
        page = bytes(content[i << shift:min((i + 1) << shift, limit)])
        content[hashes + 32 * i:hashes + 32 * (i + 1)] = hashlib.sha256(page).digest()


def main(path):
    content = bytearray(path.read_bytes())
    round_segments(content)
    keep_one_image_info(content)
    directory = code_directory(content)
    if directory is not None:
        update_hashes(content, directory)
    # A new file: the system remembers the pages of the old one.
    new = path.with_name(path.name + ".new")
    new.write_bytes(content)
    new.chmod(path.stat().st_mode)
    new.replace(path)


if __name__ == "__main__":
    main(Path(sys.argv[1]))
