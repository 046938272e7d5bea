#!/usr/bin/env python3
"""Compares what the suites' programs printed in a Linux run and in a run of the macOS executables.

Usage: tests/macos/suites/compare_logs.py [--records FOLDER] [--show]

The tests keep the output of every program that they run in FOLDER/linux and FOLDER/macos (see
tests/support/run_record.h). Each log line of the one has to be in the other, in its order, or one of
the patterns in differences.txt says why it is not. --show prints the explained ones too.
"""

import argparse
import difflib
import re
import sys
from collections import Counter
from pathlib import Path

sys.dont_write_bytecode = True

HERE = Path(__file__).resolve().parent
SOURCE = HERE.parents[2]

# What differs between any two runs: the place of the checkout and of the build, times, processes, ports.
NORMALISED = [
    (re.compile(re.escape(f"{SOURCE}/build-macos/bin")), "BIN"),
    (re.compile(re.escape(f"{SOURCE}/build/bin")), "BIN"),
    (re.compile(re.escape(f"{SOURCE}/build/test-runtime") + "(-macos)?"), "RUNTIME"),
    (re.compile(re.escape(f"{SOURCE}/build/test-files/") + r"[A-Za-z0-9]{6}"), "FOLDER"),
    (re.compile(r"/tmp/quorvane-[A-Za-z0-9]{6}"), "TMP"),
    (re.compile(r"\d{4}-\d\d-\d\d \d\d:\d\d:\d\d\.\d{3} "), "TIME "),
    (re.compile(r"(Wrapper|Launcher|Install)-[\d-]+\.log"), r"\1-TIME.log"),
    (re.compile(r"after \d+ ms: "), "after TIME ms: "),
    (re.compile(r"QuorvaneTemp-\d+-"), "QuorvaneTemp-TIME-"),
    (re.compile(r"QVLaunchProperties-\d+"), "QVLaunchProperties-TIME"),
    (re.compile(r"(?<=\[)\d+:\d+(?=\])"), "PID:THREAD"),
    (re.compile(r"\[pid=\d+\]"), "[pid=PID]"),
    (re.compile(r"(?<=> \()\d+(?=\)\] - nwrap_)"), "PID"),
    (re.compile(r"Spawn call done \d+"), "Spawn call done PID"),
    (re.compile(r"(?m)Public Key: [0-9A-F]{8}$"), "Public Key: POINTER"),
    (re.compile(r"(?<=127\.0\.0\.1:)\d+"), "PORT"),
    (re.compile(r"(?<=localhost:)\d+"), "PORT"),
]
ELAPSED = re.compile(r"\+(?=\d+ +)[0-9 ]{8} |\+\d{9,20} ")
# Two messages of the main thread have no line end, and the launch thread may write right behind them.
OPEN_LINE = re.compile(r"Created NSApplication|About to cload OSX UI NIB")
LAUNCH_THREAD = re.compile(r"(TIME \S+\[PID:THREAD\] )?(\[JNI|\[Utils\]|\[Guest\])")


def lines_of(path):
    text = path.read_bytes().decode("utf-8", "backslashreplace")
    text = OPEN_LINE.sub(lambda found: found.group() + "\n", ELAPSED.sub("\n", text))
    for pattern, replacement in NORMALISED:
        text = pattern.sub(replacement, text)
    return [line.rstrip() for line in text.splitlines() if line.strip()]


def lanes(lines):
    """The lines of each writer: their order to each other is left to chance. On standard error the
    system log has a time in front, and other programs, Java included, have none."""
    launch = [line for line in lines if LAUNCH_THREAD.match(line)]
    rest = [line for line in lines if not LAUNCH_THREAD.match(line)]
    timed = [line for line in rest if line.startswith("TIME ")]
    return launch, timed, [line for line in rest if not line.startswith("TIME ")]


def differences(linux, macos, renamed):
    """Lines of one file that the other lacks: "-" those of Linux alone, "+" those of macOS alone."""
    expected = [renamed(line) for line in lines_of(linux)]
    for one, other in zip(lanes(expected), lanes(lines_of(macos))):
        for line in difflib.unified_diff(one, other, lineterm="", n=0):
            if line[0] in "-+" and line[:3] not in ("---", "+++"):
                yield f"{line[0]} {line[1:]}"


class Explained:
    """The patterns and names of differences.txt, each below the reason that holds for it."""

    def __init__(self, path):
        self.reasons = {}
        self.names = {}
        self.left_to_chance = set()
        reason, open_ = "", False
        for line in path.read_text().splitlines():
            if line.startswith("#"):
                reason = reason + " " + line[1:].strip() if open_ else line[1:].strip()
                open_ = True
            elif line.strip():
                open_ = False
                if not reason:
                    sys.exit(f"{path}: no reason for {line}")
                if line.startswith("? "):
                    line = line[2:]
                    self.left_to_chance.add(line)
                before, arrow, after = line.partition(" ==> ")
                if arrow:
                    self.names[re.compile(before)] = after
                else:
                    self.reasons[re.compile(line)] = reason
            else:
                reason, open_ = "", False
        self.counts = Counter()

    def renamed(self, line):
        """A line of Linux with the names that macOS has instead."""
        for pattern, name in self.names.items():
            line, count = pattern.subn(name, line)
            self.counts[pattern] += count
        return line

    def explains(self, difference):
        for pattern in self.reasons:
            if pattern.search(difference):
                self.counts[pattern] += 1
                return True
        return False

    def unused(self):
        every = [*self.names, *self.reasons]
        return [pattern.pattern for pattern in every
                if not self.counts[pattern] and pattern.pattern not in self.left_to_chance]


def records(folder):
    return {path.relative_to(folder): path for path in folder.rglob("*") if path.is_file()}


def compare(folder, explained, show):
    """Prints unexplained differences; returns the counts of files and lines compared, and the errors."""
    linux, macos = records(folder / "linux"), records(folder / "macos")
    tests = {name.parent for name in macos}
    files = lines = wrong = 0
    for name in sorted(set(macos) | {name for name in linux if name.parent in tests}):
        if name not in linux or name not in macos:
            found = [f"{'+' if name in macos else '-'} the program was run"]
        else:
            found = list(differences(linux[name], macos[name], explained.renamed))
            files += 1
            lines += len(lines_of(macos[name]))
        for difference in found:
            text = f"{name}: {difference}"
            known = explained.explains(text)
            wrong += 0 if known else 1
            if show or not known:
                print(("explained  " if known else "UNEXPLAINED  ") + text)
    return len(tests), files, lines, wrong


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--records", type=Path, default=SOURCE / "build/run-records")
    parser.add_argument("--show", action="store_true")
    options = parser.parse_args()
    explained = Explained(HERE / "differences.txt")
    tests, files, lines, wrong = compare(options.records, explained, options.show)
    for pattern in explained.unused():
        print(f"UNUSED  {pattern}")
    print(f"{lines} lines in {files} files of {tests} tests compared, "
          f"{sum(explained.counts.values())} differences explained, {wrong} unexplained")
    return 1 if wrong or explained.unused() or not lines else 0


if __name__ == "__main__":
    sys.exit(main())
