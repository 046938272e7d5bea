"""What the measurements of bench/scale share: files, accounts, runs and rows of the table."""

import os
import random
import re
import shutil
import statistics
import subprocess
import sys
import time
from pathlib import Path

ROUNDS, WORK, BIN = int(sys.argv[1]), sys.argv[2], os.path.abspath(sys.argv[3])
PACK = os.path.join(BIN, "quorvane-pack")


def sizes(name, default):
    return [int(word) for word in os.environ.get(name, default).split()]


def path(*names):
    return os.path.join(WORK, *names)


def write(name, text):
    with open(path(name), "w", encoding="utf-8") as file:
        file.write(text)


def run(*command, **options):
    result = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, check=False,
                            **options)
    if result.returncode != 0:
        sys.exit(f"failed: {' '.join(command)}\n{result.stdout.decode(errors='replace')[-2000:]}")


def measure(command, variables=None, folder=None):
    """Runs a command once; wall time in seconds, and what it printed."""
    with open(path("log"), "wb") as log:
        start = time.perf_counter()
        process = subprocess.Popen(command, stdout=log, stderr=subprocess.DEVNULL, env=variables,
                                   cwd=folder)
        status = process.wait()
        wall = time.perf_counter() - start
    with open(path("log"), "rb") as log:
        output = log.read()
    if status != 0:
        sys.exit(f"failed: {' '.join(command)[:2000]}\n{output.decode(errors='replace')[-2000:]}")
    return wall, output


def start_of_main(command, variables, folder=None):
    """Seconds from exec to the first line of Java's main, and the output."""
    _, output = measure([f"{BIN}/exec_stamp", *command], variables, folder)
    begin, entered = (re.search(rb"(?:^|\n|\.)" + word + rb" (\d+)\n", output)
                      for word in (b"exec", b"main"))
    if begin is None or entered is None:
        sys.exit(f"Java's main did not run:\n{output.decode(errors='replace')[-2000:]}")
    return (int(entered.group(1)) - int(begin.group(1))) / 1e9, output


def peak_memory(command, variables=None):
    """The largest memory of one process, in MB. What wait4() says contains that of this program, which
    the new process is until it starts the other."""
    peak = 0
    process = subprocess.Popen(command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                               env=variables)
    while process.poll() is None:
        with open(f"/proc/{process.pid}/status", encoding="ascii") as status:
            found = re.search(r"VmHWM:\s*(\d+) kB", status.read())
        peak = int(found.group(1)) if found else peak
        time.sleep(0.002)
    if process.returncode != 0:
        sys.exit(f"failed: {' '.join(command)}")
    return peak / 1024


def own_memory(command, bundle, variables):
    """The largest memory of the Extractor alone, in MB: Java runs as a process of its own here."""
    run(PACK, "params", "write", bundle, "force_spawn=true")
    peak = peak_memory(command, variables)
    run(PACK, "params", "write", bundle, "--unset", "force_spawn")
    return peak


def make_account(name):
    """A fresh account; returns the environment of its programs."""
    account = path(name)
    shutil.rmtree(account, ignore_errors=True)
    os.makedirs(os.path.join(account, "home"))
    write(f"{name}/passwd", f"bench:x:{os.getuid()}:{os.getgid()}:B:{account}/home:/bin/sh\n")
    write(f"{name}/group", f"bench:x:{os.getgid()}:\n")
    temporary = os.environ["BENCH_TMP"]
    return dict(os.environ, HOME=f"{account}/home", LD_PRELOAD="libnss_wrapper.so", TMPDIR=temporary,
                TEMP=temporary, TMP=temporary, NSS_WRAPPER_PASSWD=f"{account}/passwd",
                NSS_WRAPPER_GROUP=f"{account}/group")


def master_folder(account):
    return path(account, "home", "Library", "Application Support", "Quorvane-Sample")


def rounds_of(runs, rounds):
    """Runs every entry of a {name: function} in each round, in changing order, after one round that
    does not count; returns {name: [results]}."""
    results = {name: [] for name in runs}
    names = list(runs)
    for number in range(1 + rounds):
        random.Random(number).shuffle(names)
        for name in names:
            result = runs[name]()
            if number > 0:
                results[name].append(result)
    return results


def median(rows, column=0):
    return statistics.median(row[column] for row in rows)


class Table:
    """One row a case. The ratio is that of the unit's time, or of the whole time for starts, to the
    kind's smallest case."""

    def __init__(self):
        print("| case | rounds | s | without the fixed cost, per unit | to the smallest | beside it, s | per "
              "unit | to the smallest | own memory, MB |\n|---|---|---|---|---|---|---|---|---|",
              flush=True)
        self.first = {}

    def ratio(self, kind, value):
        return f"{value / self.first.setdefault(kind, value):.2f}"

    def add(self, kind, case, rounds, ours, beside=("", "", ""), memory=""):
        """`ours` and `beside`: seconds, the text of the unit's time, and the value whose ratio counts."""
        cells = [f"{kind}: {case}", rounds]
        for who, (seconds, unit, value) in (("ours", ours), ("beside", beside)):
            cells += ["", "", ""] if seconds == "" else [
                f"{seconds:.3f}", unit, "" if value is None else self.ratio((kind, who), value)]
        cells.append(f"{memory:.1f}" if memory != "" else "")
        print("| " + " | ".join(str(cell) for cell in cells) + " |", flush=True)
