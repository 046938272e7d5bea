"""Compares how long programs take from exec to the first line of Java's main, and their peak memory.

Usage: startup.py ROUNDS FOLDER EXEC_STAMP

FOLDER is laid out by bench/startup.sh. Every round starts every variant once, in an order that
changes from round to round; the first rounds warm up and do not count. All variants run with the
same environment, the same Java runtime and the same class path.
"""

import os
import random
import re
import statistics
import subprocess
import sys
import time

WARM_UP = 3
KINDS = ["plain", "shared"]  # without and with class-data sharing

# Where the Launcher's time goes: each stage ends with the first line that holds the text, and has
# an owner: "ours", or what it is spent in.
STAGES = [
    ("dynamic linker and static initialisers", "Starting Launcher", "linker"),
    ("Tail record", "Update URL", "ours"),
    ("folders and runtime choice", "JRE path is", "ours"),
    ("runtime's bundle", "About to create NSApplication", "ours"),
    ("application object", "Created NSApplication", "toolkit"),
    ("launch thread up to the JVM", "JNI Option", "ours"),
    ("JVM creation", "Searching for clazz", "JVM"),
    ("main class", "Searching for main method", "JVM"),
    ("arguments", "Closing logging file.\n", "ours"),
    ("first line of main", "", "JVM"),
]


def environment(folder, kind):
    account = f"{folder}/account-{kind}"
    return dict(
        os.environ,
        HOME=f"{account}/home",
        TMPDIR=os.environ["BENCH_TMP"],
        TEMP=os.environ["BENCH_TMP"],
        TMP=os.environ["BENCH_TMP"],
        LD_PRELOAD="libnss_wrapper.so",
        NSS_WRAPPER_PASSWD=f"{account}/passwd",
        NSS_WRAPPER_GROUP=f"{account}/group",
    )


def variants(folder, kind):
    runtime = (f"{folder}/account-{kind}/home/Library/Application Support/Quorvane-Startup/"
               "Quorvane-Mac64JRE-1-complete")
    class_path = ["-cp", f"{folder}/startup.jar", "Startup"]
    return {
        "java -cp": [f"{runtime}/bin/java", *class_path],
        "Launcher": [f"{folder}/Startup.app/Contents/MacOS/Startup", *class_path],
        "jpackage": [f"{folder}/image-{kind}/Startup/bin/Startup"],
    }


class Output:
    """What a program prints, with the time at which each piece arrived. Some of the Launcher's
    messages end without a line end, so lines would not do."""

    def __init__(self, pipe):
        self.text = ""
        self.pieces = []  # (characters up to its end, time)
        while piece := os.read(pipe.fileno(), 65536):
            now = time.monotonic_ns()
            self.text += piece.decode(errors="replace")
            self.pieces.append((len(self.text), now))

    def time_of(self, text):
        end = self.text.index(text) + len(text)
        return next(time for length, time in self.pieces if length >= end)

    def clock_after(self, word):
        """The clock printed after `word` at the start of a line."""
        found = re.search(rf"(?:^|\n|\.){word} (\d+)\n", self.text)
        return found and int(found.group(1))


def start(command, variables, stamp):
    """Runs one program; returns when it was started, when main began, its output and its peak
    memory in MiB."""
    with subprocess.Popen([stamp, *command], stdout=subprocess.PIPE, stderr=subprocess.DEVNULL,
                          env=variables) as process:
        output = Output(process.stdout)
        _, status, usage = os.wait4(process.pid, 0)
        process.returncode = os.waitstatus_to_exitcode(status)
    begin, entered = output.clock_after("exec"), output.clock_after("main")
    if process.returncode != 0 or begin is None or entered is None:
        sys.exit(f"startup: {command[0]} ended with status {process.returncode} and printed:\n"
                 + output.text)
    return begin, entered, output, usage.ru_maxrss / 1024


def stages_of(begin, entered, output):
    """Milliseconds of each stage of one start of the Launcher."""
    ends = [output.time_of(text) for _, text, _ in STAGES[:-1]] + [entered]
    return [max(0, end - start) / 1e6 for start, end in zip([begin, *ends], ends)]


def measure(folder, rounds, stamp):
    times, stages, peaks = {}, {}, {}
    for number in range(WARM_UP + rounds):
        runs = [(kind, *item) for kind in KINDS for item in variants(folder, kind).items()]
        random.Random(number).shuffle(runs)
        for kind, name, command in runs:
            begin, entered, output, peak = start(command, environment(folder, kind), stamp)
            if number < WARM_UP:
                continue
            times.setdefault((kind, name), []).append((entered - begin) / 1e6)
            peaks.setdefault((kind, name), []).append(peak)
            if name == "Launcher":
                stages.setdefault(kind, []).append(stages_of(begin, entered, output))
    return times, stages, peaks


def report(times, stages, peaks):
    print(f"exec to the first line of Java's main, milliseconds, medians of "
          f"{len(times['plain', 'Launcher'])} interleaved starts\n")
    print(f"{'class-data sharing':20} {'java -cp':>9} {'Launcher':>9} {'jpackage':>9} "
          f"{'Launcher/jpackage':>18} {'Launcher/java':>14}")
    for kind, label in zip(KINDS, ["off", "on"]):
        java, ours, theirs = (statistics.median(times[kind, name])
                              for name in ("java -cp", "Launcher", "jpackage"))
        print(f"{label:20} {java:9.1f} {ours:9.1f} {theirs:9.1f} {ours / theirs:18.2f} "
              f"{ours / java:14.2f}")
    print("\npeak memory, MB, medians\n")
    for kind, label in zip(KINDS, ["off", "on"]):
        java, ours, theirs = (statistics.median(peaks[kind, name])
                              for name in ("java -cp", "Launcher", "jpackage"))
        print(f"{label:20} {java:9.1f} {ours:9.1f} {theirs:9.1f}")
    print(f"\nwhere the Launcher's time goes, milliseconds, medians\n\n"
          f"{'stage':42} {'spent in':9} {'off':>6} {'on':>6}")
    medians = {kind: [statistics.median(column) for column in zip(*stages[kind])] for kind in KINDS}
    for index, (label, _, owner) in enumerate(STAGES):
        print(f"{label:42} {owner:9} {medians['plain'][index]:6.1f} {medians['shared'][index]:6.1f}")
    ours = {kind: sum(medians[kind][i] for i, stage in enumerate(STAGES) if stage[2] == "ours")
            for kind in KINDS}
    print(f"{'all that is ours':42} {'':9} {ours['plain']:6.1f} {ours['shared']:6.1f}")


if __name__ == "__main__":
    report(*measure(sys.argv[2], int(sys.argv[1]), sys.argv[3]))
