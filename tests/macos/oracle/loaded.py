"""The oracles, read once and kept beside their sources for as long as neither these nor the readers change."""

import hashlib
import pickle
from pathlib import Path

from libc_crate import LibcCrate
from objc2_crates import Objc2Crates
from sdk_metadata import SdkMetadata

HERE = Path(__file__).resolve().parent
ARCHES = ("x86_64", "arm64")


def fingerprint(paths):
    digest = hashlib.sha256()
    for path in sorted(paths):
        digest.update(f"{path.name} {hashlib.sha256(path.read_bytes()).hexdigest()}\n".encode())
    return digest.hexdigest()


def load(folder):
    """The oracles of both processors: {"crates": ..., "sdk": {arch: ...}, "libc": {arch: ...}}."""
    readers = [HERE / name for name in ("pinned", "libc_crate.py", "objc2_crates.py", "sdk_metadata.py",
                                        "rust_text.py", "loaded.py")]
    cache = Path(folder, f"read-{fingerprint(readers)[:16]}")
    if cache.is_file():
        return pickle.loads(cache.read_bytes())  # written by the lines below, into this build's own folder
    oracles = {"crates": Objc2Crates(Path(folder, "crates")),
               "sdk": {arch: SdkMetadata(Path(folder, "metadata"), arch) for arch in ARCHES},
               "libc": {arch: LibcCrate(Path(folder, "crates/libc"), arch) for arch in ARCHES}}
    new = cache.with_suffix(".new")
    new.write_bytes(pickle.dumps(oracles))
    new.rename(cache)
    return oracles
