"""Measures the extraction of archives beside tar; bench/archive.sh prepares what it needs.

Usage: measure.py BIN WORK JDK KEY   (BIN: the benchmark's programs, WORK: an empty folder)

If the environment variable BESIDE names a folder with the same programs of another build, their
verification is measured in the same rounds.
"""

import os
import random
import resource
import shutil
import statistics
import subprocess
import sys
import time

BIN, WORK, JDK, KEY = sys.argv[1:5]
ROUNDS = int(os.environ.get("ROUNDS", "15"))
MEGABYTES = [int(word) for word in os.environ.get("MEGABYTES", "10 100 1000").split()]
PACK = os.path.join(BIN, "quorvane-pack")
EXTRACT = os.path.join(BIN, "archive_extract")
QUIET = os.path.join(BIN, "archive_extract_quiet")
OWN_LOG = os.path.join(BIN, "archive_extract_own_log")
BESIDE = os.environ.get("BESIDE", "")
ONE_PROCESSOR = ["taskset", "-c", "0"]
LEFT_OUT = ("jmods", "src.zip", "ct.sym")


def path(name):
    return os.path.join(WORK, name)


def copy_runtime():
    """A real runtime, links replaced by what they point to."""
    shutil.copytree(JDK, path("runtime"), ignore=shutil.ignore_patterns(*LEFT_OUT),
                    ignore_dangling_symlinks=True)


def make_small_files():
    for i in range(5000):
        folder = os.path.join(path("small"), "folder%d" % (i // 100))
        os.makedirs(folder, exist_ok=True)
        with open(os.path.join(folder, "file%d" % i), "wb") as file:
            file.write(random.Random(i).randbytes(1024))


def make_archives(name):
    tree = path(name)
    subprocess.run([PACK, "archive", "create", tree, tree + ".p2"], check=True)
    subprocess.run([PACK, "archive", "create", "--key", KEY, tree, tree + ".signed.p2"], check=True)
    subprocess.run(["tar", "-cf", tree + ".tar", "-C", tree, "."], check=True)


def measure(command):
    """Runs a command once; wall and processor time in seconds, peak memory in KiB."""
    start = time.perf_counter()
    with open(path("log"), "wb") as log:
        process = subprocess.Popen(command, stdout=log, stderr=log)
        _, status, usage = os.wait4(process.pid, 0)
    wall = time.perf_counter() - start
    if status != 0:
        sys.exit("failed: " + " ".join(command))
    return wall, usage.ru_utime + usage.ru_stime, usage.ru_maxrss


LARGE = 50_000_000


def fresh_folder(archive):
    """A new folder each time. What was extracted from small archives stays until the table is done:
    ext4 makes files ten times as slowly for minutes after others were deleted, which hides all else.
    A large one's goes at once: memory that is used for the first time costs a virtual machine more
    than the extraction."""
    if os.path.getsize(archive) > LARGE:
        shutil.rmtree(path("out"), ignore_errors=True)
    os.makedirs(path("out"), exist_ok=True)
    folder = os.path.join(path("out"), str(len(os.listdir(path("out")))))
    os.mkdir(folder)
    return folder


def extract(program, archive, *key, before=()):
    """Extracts into a fresh folder; the archive is deleted, so it gets a second name first."""
    folder = fresh_folder(archive)
    if os.path.exists(path("given.p2")):
        os.unlink(path("given.p2"))
    os.link(archive, path("given.p2"))
    result = measure([*before, program, "extract", path("given.p2"), folder, *key])
    if not os.path.exists(folder):
        sys.exit("not accepted: " + archive)
    return result


def untar(archive):
    folder = fresh_folder(archive)
    return measure(["tar", "-xf", archive, "-C", folder])


def compare(runs):
    """Runs every entry of a {name: function} in each round, in changing order."""
    results = {name: [] for name in runs}
    names = list(runs)
    for _ in range(ROUNDS):
        random.shuffle(names)
        for name in names:
            results[name].append(runs[name]())
    return {name: (statistics.median(r[0] for r in rows), statistics.median(r[1] for r in rows))
            for name, rows in results.items()}


def table(title, medians, base):
    print("\n%s, medians of %d rounds" % (title, ROUNDS))
    print("| | wall, ms | to %s | processor, ms | to %s |" % (base, base))
    print("|---|---|---|---|---|")
    for name, (wall, cpu) in medians.items():
        print("| %s | %.0f | %.2f | %.0f | %.2f |" % (
            name, wall * 1000, wall / medians[base][0], cpu * 1000, cpu / medians[base][1]))


def count(tree):
    files = [os.path.join(f, n) for f, _, names in os.walk(tree) for n in names]
    return len(files), sum(os.path.getsize(f) for f in files) / 1e6


def other_verifications(tree):
    """The verification on one processor, and that of the other build."""
    signed, key = tree + ".signed.p2", path("key")
    rows = {"extraction, signed, one processor":
            lambda: extract(EXTRACT, signed, key, before=ONE_PROCESSOR),
            "extraction, one processor":
            lambda: extract(EXTRACT, tree + ".p2", before=ONE_PROCESSOR)}
    if BESIDE:
        other = os.path.join(BESIDE, "archive_extract")
        rows["beside it: extraction"] = lambda: extract(other, tree + ".p2")
        rows["beside it: extraction, signed"] = lambda: extract(other, signed, key)
        rows["beside it: extraction, one processor"] = lambda: extract(
            other, tree + ".p2", before=ONE_PROCESSOR)
        rows["beside it: extraction, signed, one processor"] = lambda: extract(
            other, signed, key, before=ONE_PROCESSOR)
    return rows


def print_verification(medians, suffix):
    """What the signature adds, in wall time, and beside the other build's."""
    def added(prefix):
        return (medians[f"{prefix}extraction, signed{suffix}"][0]
                - medians[f"{prefix}extraction{suffix}"][0]) * 1000
    own = added("")
    print("verification%s: %.0f ms wall time" % (suffix, own), end="")
    print("; beside it %.0f ms: %.2f" % (added("beside it: "), own / added("beside it: "))
          if BESIDE else "")


def measure_tree(name, title):
    make_archives(name)
    tree = path(name)
    files, size = count(tree)
    medians = compare({
        "tar": lambda: untar(tree + ".tar"),
        "the program alone": lambda: measure([EXTRACT, "nothing"]),
        "extraction, without NSLog": lambda: extract(OWN_LOG, tree + ".p2"),
        **other_verifications(tree),
        "extraction": lambda: extract(EXTRACT, tree + ".p2"),
        "extraction, logging nothing": lambda: extract(QUIET, tree + ".p2"),
        "extraction, signed": lambda: extract(EXTRACT, tree + ".signed.p2", path("key")),
        "hashing alone": lambda: measure([EXTRACT, "hash", tree + ".p2"]),
    })
    table("%s: %d files, %.0f MB" % (title, files, size), medians, "tar")
    plain, signed = medians["extraction"], medians["extraction, signed"]
    quiet, hashing = medians["extraction, logging nothing"], medians["hashing alone"]
    start, own = medians["the program alone"], medians["extraction, without NSLog"]
    tar = medians["tar"]
    print("\nthe log's share: %.0f %% of the wall time, without NSLog %.0f %%" % (
        100 * (1 - quiet[0] / plain[0]), 100 * (1 - quiet[0] / own[0])))
    print("to tar without the program's start: %.2f, without NSLog %.2f, logging nothing %.2f" % tuple(
        (row[0] - start[0]) / tar[0] for row in (plain, own, quiet)))
    print_verification(medians, "")
    print_verification(medians, ", one processor")
    print("verification adds %.0f ms processor time, hashing alone takes %.0f: %.2f" % (
        1000 * (signed[1] - plain[1]), 1000 * hashing[1], (signed[1] - plain[1]) / hashing[1]))


def measure_memory():
    empty = statistics.median(measure([EXTRACT, "nothing"])[2] for _ in range(ROUNDS))
    print("\npeak memory above the empty program (%.1f MB)" % (empty / 1024))
    print("| archive | unsigned, MB | signed, MB |")
    print("|---|---|---|")
    for size in MEGABYTES:
        tree = path("one")
        os.makedirs(tree)
        with open(os.path.join(tree, "file"), "wb") as file:
            for _ in range(size):
                file.write(os.urandom(1000000))
        make_archives("one")
        unsigned = extract(EXTRACT, tree + ".p2")[2] - empty
        signed = extract(EXTRACT, tree + ".signed.p2", path("key"))[2] - empty
        print("| %d MB | %.1f | %.1f |" % (size, unsigned / 1024, signed / 1024))
        shutil.rmtree(tree)


def main():
    with open(path("key"), "w") as file:
        subprocess.run([PACK, "key", "show", KEY], stdout=file, stderr=subprocess.DEVNULL, check=True)
    make_small_files()
    measure_tree("small", "Small files")
    shutil.rmtree(path("out"))
    copy_runtime()
    measure_tree("runtime", "A real runtime")
    measure_memory()


main()
