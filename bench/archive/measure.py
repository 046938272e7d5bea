"""Measures the extraction of archives beside tar; bench/archive.sh prepares what it needs.

Usage: measure.py BIN WORK JDK KEY   (BIN: the benchmark's programs, WORK: an empty folder)
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


def extract(program, archive, *key):
    """Extracts into a fresh folder; the archive is deleted, so it gets a second name first."""
    shutil.rmtree(path("out"), ignore_errors=True)
    os.mkdir(path("out"))
    if os.path.exists(path("given.p2")):
        os.unlink(path("given.p2"))
    os.link(archive, path("given.p2"))
    result = measure([program, "extract", path("given.p2"), path("out"), *key])
    if not os.path.exists(path("out")):
        sys.exit("not accepted: " + archive)
    return result


def untar(archive):
    shutil.rmtree(path("out"), ignore_errors=True)
    os.mkdir(path("out"))
    return measure(["tar", "-xf", archive, "-C", path("out")])


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


def measure_tree(name, title):
    make_archives(name)
    tree = path(name)
    files, size = count(tree)
    medians = compare({
        "tar": lambda: untar(tree + ".tar"),
        "extraction": lambda: extract(EXTRACT, tree + ".p2"),
        "extraction, logging nothing": lambda: extract(QUIET, tree + ".p2"),
        "extraction, signed": lambda: extract(EXTRACT, tree + ".signed.p2", path("key")),
        "hashing alone": lambda: measure([EXTRACT, "hash", tree + ".p2"]),
    })
    table("%s: %d files, %.0f MB" % (title, files, size), medians, "tar")
    plain, signed = medians["extraction"], medians["extraction, signed"]
    quiet, hashing = medians["extraction, logging nothing"], medians["hashing alone"]
    print("\nthe log's share: %.0f %% of the wall time" % (100 * (1 - quiet[0] / plain[0])))
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
    copy_runtime()
    measure_tree("runtime", "A real runtime")
    make_small_files()
    measure_tree("small", "Small files")
    measure_memory()


main()
