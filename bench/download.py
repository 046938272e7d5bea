"""Measures the downloader beside curl; see download.sh.

Usage: download.py DOWNLOADER ROUNDS
"""
import filecmp
import os
import statistics
import subprocess
import sys
import tempfile
import time

SIZE = 300 * 1024 * 1024
SLOWEST = 1.15  # times curl's wall time
LARGEST = 40 * 1024  # kilobytes


def measure(command):
    """Wall time in seconds and peak memory in kilobytes of a command that must succeed."""
    start = time.perf_counter()
    child = subprocess.Popen(command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    _, status, usage = os.wait4(child.pid, 0)
    seconds = time.perf_counter() - start
    child.returncode = os.waitstatus_to_exitcode(status)
    if child.returncode != 0:
        sys.exit(f"bench: {command[0]} ended with {child.returncode}")
    return seconds, usage.ru_maxrss


def report(name, results):
    seconds = [result[0] for result in results]
    print(f"{name:<12} median {statistics.median(seconds):.3f} s  "
          f"fastest {min(seconds):.3f} s  slowest {max(seconds):.3f} s  "
          f"peak {max(result[1] for result in results) / 1024:.1f} MB")
    return statistics.median(seconds)


def compare(downloader, rounds, folder):
    source, copy = os.path.join(folder, "source"), os.path.join(folder, "copy")
    with open(source, "wb") as file:
        for _ in range(SIZE // (1 << 20)):
            file.write(os.urandom(1 << 20))
    server = subprocess.Popen([sys.executable, "tests/fakes/web_server.py"],
                              stdout=subprocess.PIPE, text=True)
    try:
        port = server.stdout.readline().split()[1]
        url = f"http://127.0.0.1:{port}/file?path={source}"
        ours, curls = [], []
        for _ in range(rounds):
            ours.append(measure([downloader, url, copy]))
            if not filecmp.cmp(source, copy, shallow=False):
                sys.exit("bench: the downloaded file differs")
            os.unlink(copy)
            curls.append(measure(["curl", "-s", "-o", copy, url]))
            os.unlink(copy)
    finally:
        server.kill()
    return ours, curls


def main():
    downloader, rounds = sys.argv[1], int(sys.argv[2])
    with tempfile.TemporaryDirectory(dir=os.path.dirname(os.path.dirname(downloader))) as folder:
        ours, curls = compare(downloader, rounds, os.path.abspath(folder))
    print(f"300 MB over HTTP on this machine, {rounds} rounds in turn")
    ratio = report("downloader", ours) / report("curl -o", curls)
    peak = max(result[1] for result in ours)
    print(f"wall time {ratio:.2f} of curl's (at most {SLOWEST}), "
          f"peak {peak / 1024:.1f} MB (at most {LARGEST // 1024} MB)")
    missed = ratio > SLOWEST or peak > LARGEST
    return 1 if missed and not os.environ.get("QUORVANE_BENCH_SHORT") else 0


if __name__ == "__main__":
    sys.exit(main())
