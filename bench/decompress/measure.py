"""Decompresses archives with lzma64 and with xz, one after the other; bench/decompress.sh makes them.

Usage: measure.py ROUNDS LZMA64 ARCHIVE...

Prints medians of the processor time of whole processes. A ratio above 1 says that lzma64 is faster.
"""

import os
import statistics
import subprocess
import sys
from pathlib import Path

ROUNDS, LZMA64 = int(sys.argv[1]), os.path.abspath(sys.argv[2])
ARCHIVES = [Path(name) for name in sys.argv[3:]]


def processor_time(command, output=subprocess.DEVNULL):
    """Seconds that a command takes of a processor, the system's part included."""
    process = subprocess.Popen(command, stdout=output)
    _, status, usage = os.wait4(process.pid, 0)
    process.returncode = os.waitstatus_to_exitcode(status)
    if process.returncode != 0:
        sys.exit(f"failed: {' '.join(map(str, command))}")
    return usage.ru_utime + usage.ru_stime


def with_lzma64(archive):
    return processor_time([LZMA64, "d", archive, archive.with_name("ours")])


def with_xz(archive):
    with open(archive.with_name("theirs"), "wb") as output:
        return processor_time(["xz", "-dc", "--format=lzma", archive], output)


def measure(archive):
    ours, theirs = [], []
    for number in range(ROUNDS):
        # Each is first in every other round.
        if number % 2 == 0:
            ours.append(with_lzma64(archive))
            theirs.append(with_xz(archive))
        else:
            theirs.append(with_xz(archive))
            ours.append(with_lzma64(archive))
    decompressed = archive.with_name("ours").read_bytes()
    if decompressed != archive.with_name("theirs").read_bytes():
        sys.exit(f"{archive.name} is decompressed to something else by each")
    mine, other = statistics.median(ours), statistics.median(theirs)
    print(f"{archive.name.partition('.')[0]:10} {archive.stat().st_size / 1e6:10.1f} {len(decompressed) / 1e6:12.1f} "
          f"{mine * 1e3:10.0f} {other * 1e3:10.0f} {other / mine:8.2f}")


def main():
    print(f"{'archive':10} {'packed, MB':>10} {'unpacked, MB':>12} {'lzma64, ms':>10} {'xz, ms':>10} {'ratio':>8}")
    for archive in ARCHIVES:
        measure(archive)
    version = subprocess.run(["xz", "--version"], capture_output=True, text=True, check=True).stdout.splitlines()
    print(f"{ROUNDS} rounds; {version[0]}, {version[1]}")


main()
