"""The extraction of archives that grow in files, beside tar. Nothing is deleted meanwhile: ext4 makes
files several times as slowly for minutes after others were deleted."""

import itertools
import os
import random

from common import BIN, PACK, ROUNDS, measure, median, path, peak_memory, run, sizes

EXTRACT = os.path.join(BIN, "archive_extract")
NUMBERS = itertools.count()


def make(count):
    tree = path(f"files-{count}")
    rng = random.Random(count)
    for number in range(count):
        folder = os.path.join(tree, f"folder{number // 100}")
        if number % 100 == 0:
            os.makedirs(folder)
        with open(os.path.join(folder, f"file{number}"), "wb") as file:
            file.write(rng.randbytes(100))
    run(PACK, "archive", "create", tree, tree + ".p2")
    run("tar", "-cf", tree + ".tar", "-C", tree, ".")
    return tree


def fresh_folder():
    folder = path("out", str(next(NUMBERS)))
    os.mkdir(folder)
    return folder


def extraction(tree):
    """The command and its folder. It deletes the archive, which therefore gets a second name first."""
    folder = fresh_folder()
    given = folder + ".p2"
    os.link(tree + ".p2", given)
    return [EXTRACT, "extract", given, folder], folder


def extract(tree):
    command, folder = extraction(tree)
    result = measure(command)
    if not os.path.exists(os.path.join(folder, "folder0", "file0")):
        raise SystemExit("nothing was extracted")
    return result


def untar(tree):
    return measure(["tar", "-xf", tree + ".tar", "-C", fresh_folder()])


def measure_archives(table):
    counts = sizes("ARCHIVES", "1000 10000 100000")
    trees = {count: make(count) for count in counts}
    os.makedirs(path("out"))
    os.sync()
    fixed = median([measure([EXTRACT, "nothing"]) for _ in range(5)])
    rounds = {count: max(1, ROUNDS // 4 if count > 50000 else ROUNDS // 2) for count in counts}
    results = {}
    for count, tree in trees.items():
        for _ in range(rounds[count]):
            results.setdefault((count, "tar"), []).append(untar(tree))
            results.setdefault((count, "own"), []).append(extract(tree))
    for count in counts:
        ours, tar = (median(results[count, who]) for who in ("own", "tar"))
        memory = peak_memory(extraction(trees[count])[0])
        unit, other = (ours - fixed) / count, tar / count
        table.add("archive", f"{count:,} files of 100 bytes, beside tar", rounds[count],
                  (ours, f"{unit * 1e6:.1f} µs/file", unit),
                  (tar, f"{other * 1e6:.1f} µs/file", other), memory)
