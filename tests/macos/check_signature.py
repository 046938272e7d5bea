"""The ad-hoc signature that a Mac with an arm64 processor asks of every executable."""

import hashlib
import struct

LC_CODE_SIGNATURE = 0x1D
SUPER_BLOB = 0xFADE0CC0
CODE_DIRECTORY = 0xFADE0C02
ADHOC = 0x2
SHA256 = 2


def signature_place(content):
    """Offset and size of the signature in a 64-bit Mach-O file of one processor, or nothing."""
    count = struct.unpack_from("<I", content, 16)[0]
    at = 32
    for _ in range(count):
        command, size, offset, length = struct.unpack_from("<IIII", content, at)
        if command == LC_CODE_SIGNATURE:
            return offset, length
        at += size
    return None


def code_directory(blob):
    """The code directory inside the signature."""
    magic, _, count = struct.unpack_from(">III", blob)
    if magic != SUPER_BLOB:
        raise ValueError(f"not a signature: {magic:#x}")
    for i in range(count):
        offset = struct.unpack_from(">I", blob, 12 + 8 * i + 4)[0]
        magic, length = struct.unpack_from(">II", blob, offset)
        if magic == CODE_DIRECTORY:
            return blob[offset:offset + length]
    raise ValueError("the signature has no code directory")


def check_signature(report, path, title):
    content = path.read_bytes()
    place = signature_place(content)
    report.check(f"{title}: is signed", place is not None)
    if place is None:
        return
    offset, length = place
    report.equal(f"{title}: its signature is the file's end", offset + length, len(content))
    directory = code_directory(content[offset:offset + length])
    flags, hashes = struct.unpack_from(">II", directory, 12)
    slots, limit, hash_size, hash_type, _, page_shift = struct.unpack_from(
        ">IIBBBB", directory, 28)
    report.check(f"{title}: its signature is ad hoc", flags & ADHOC)
    report.equal(f"{title}: its signature covers all before itself", limit, offset)
    report.equal(f"{title}: its signature hashes with SHA-256", (hash_type, hash_size), (SHA256, 32))
    page = 1 << page_shift
    wrong = [i for i in range(slots)
             if hashlib.sha256(content[i * page:min((i + 1) * page, limit)]).digest()
             != directory[hashes + 32 * i:hashes + 32 * (i + 1)]]
    report.equal(f"{title}: its signature has a hash for every page", slots, -(-limit // page))
    report.check(f"{title}: every page's hash is right", not wrong, wrong)
