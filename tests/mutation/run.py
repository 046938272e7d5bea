"""Builds mutants of the product, one changed place each, and runs the tests that should notice. See scripts/mutate."""

import argparse
import os
import queue
import random
import re
import shutil
import signal
import subprocess
import sys
import threading
import time
from collections import Counter
from dataclasses import dataclass, replace
from itertools import islice, zip_longest
from pathlib import Path

import mutants as places

ROOT = Path(__file__).resolve().parents[2]
WORK = ROOT / "build-mutation"
FOLDERS = ("archive", "crypto", "extractor", "support")
BUILD_SECONDS = 300
FIRST_RUN_SECONDS = 900
# How often cases are taken out of a suite's common process: without one, another may fail.
SEPARATIONS = 4


@dataclass(frozen=True)
class Suite:
    """A test executable, which of its cases run, what of the product it starts, and whether it is made of the mutant
    itself. A black-box test is not: the files that it makes for the product must come from the right one."""

    name: str
    filter: str = "*"
    starts: tuple = ()
    mutated: bool = True

    def targets(self):
        return [*([self.name] if self.mutated else []), *self.starts]


# One case or a few for each thing that an installer does, of those that take less than half a second: every mutant
# that survives its unit tests pays for them.
SHORT_INSTALLATIONS = ":".join((
    "DecisionOnNames.*",
    "InstallComponent.OfANewer*:InstallComponent.WithAPath*:InstallComponent.OfAnEqual*",
    "Installation.On*:Installation.*Steps*:Installation.*Keeps*:Installation.*Tool*:Installation.ThatIsE*",
    "Installation.TheSecond*:Installation.OfARuntimeWithoutJava*:Installation.OfARuntimeAs*:Silence.*:Online.ArchiveWithoutJava*",
    "Installation.OfSigned*:Installation.OfAnUnsigned*:Installation.OfAnE*:Installation.Removes*:Installation.Leaves*",
    "Online.Downloaded*:Online.VersionEnds*:Online.CompressedA*:Online.*PassesTheProbe*:Online.UsersHome*",
    "Properties.Sp*:Properties.LongV*:Properties.Stat*:Properties.JreNameSel*",
    "StartUp.Only*:StartUp.Without*:StartUp.ForceSpawn*:StartUp.*Properties*:StartUp.Tail*:StartUp.Log*",
    "Repair.IsNotMadeOfALaunchFile*:*DamagedFolder*IsRepaired*Modules*:*NoVersionFolder*EmptyFolder*TheRuntime",
))
# What survives these may meet all cases but those that wait, that fill a disk or that kill the installer at random.
LONG_INSTALLATIONS = "*-*Minute:*AnyMoment*:*FullDisk*"
INSTALLER = Suite("installer_test", SHORT_INSTALLATIONS, ("extractor",), mutated=False)
TOOLS = Suite("archive_tools_test")
SUITES = {
    "archive": (Suite("archive_test"), TOOLS, INSTALLER),
    "crypto": (Suite("crypto_test"), TOOLS, INSTALLER),
    "extractor": (Suite("extractor_test"), INSTALLER),
    "support": (Suite("support_test"), INSTALLER),
}
DOWNLOADS = (Suite("downloader_test"), INSTALLER)
SPLASH = (Suite("splash_test", starts=("splash_driver",), mutated=False), INSTALLER)
COCOA = (Suite("cocoa_test"), Suite("text_encoding_test"), INSTALLER)
ALERT = Suite("alert_test", starts=("extractor", "recorded_extractor"), mutated=False)
# What tests the files of support/ that need more than support_test: the longest beginning of a name counts.
OTHER_SUITES = {
    "support/files/deleting_walk": (Suite("support_test"), Suite("deleting_race_test"), INSTALLER),
    "support/network/downloader": DOWNLOADS,
    "support/events/event_wait": DOWNLOADS,
    "support/splash/redrawer": DOWNLOADS + SPLASH,
    "support/splash/splash": SPLASH,
    "support/failure/": (Suite("support_test"), ALERT, INSTALLER),
    "support/splash/app_runner": COCOA,
    "support/events/application_launch": (
        Suite("application_launch_test", starts=("launch_driver",), mutated=False), *COCOA),
    "support/text/cocoa_text": COCOA,
    "support/files/move_item": COCOA,
    "support/log/system_log": COCOA,
    "support/events/window_events": COCOA,
}


def suites_again(_):
    return (replace(INSTALLER, filter=LONG_INSTALLATIONS),)


def suites_of(file):
    fitting = [start for start in OTHER_SUITES if file.startswith(start)]
    return OTHER_SUITES[max(fitting, key=len)] if fitting else SUITES[file.split("/")[0]]


def files():
    return [
        str(path.relative_to(ROOT))
        for folder in FOLDERS
        for path in sorted((ROOT / folder).rglob("*"))
        if path.suffix in (".cpp", ".mm")
    ]


def in_turn(groups):
    """One of each group, then the next of each, to the end of the longest."""
    for turn in zip_longest(*groups):
        yield from (mutant for mutant in turn if mutant is not None)


def shuffled_by_kind(found, chance):
    kinds = {}
    for mutant in found:
        kinds.setdefault(mutant.kind, []).append(mutant)
    groups = list(kinds.values())
    for group in groups:
        chance.shuffle(group)
    chance.shuffle(groups)
    return in_turn(groups)


def chosen(names, count, seed):
    """`count` mutants, as many of each file as can be, and of each kind in a file."""
    chance = random.Random(seed)
    groups = [shuffled_by_kind(places.mutants(name, (ROOT / name).read_text()), chance) for name in names]
    chance.shuffle(groups)
    return sorted(islice(in_turn(groups), count), key=lambda mutant: (mutant.file, mutant.start, mutant.end))


def listed_survivors():
    """The changes that survive for a reason: a file's name, the line before, the line after, the reason."""
    listed = set()
    for block in (Path(__file__).parent / "survivors.txt").read_text().split("\n\n"):
        lines = [line for line in block.splitlines() if line and not line.startswith("#")]
        if lines:
            if len(lines) < 4 or not lines[1].startswith("- ") or not lines[2].startswith("+ "):
                sys.exit(f"mutate: survivors.txt: no file, line, change and reason: {lines[0]}")
            listed.add((lines[0], lines[1][2:], lines[2][2:]))
    return listed


class Job:
    """A copy of the sources with a build of its own."""

    def __init__(self, number, suites):
        self.folder = WORK / str(number)
        self.source = self.folder / "source"
        self.build = self.folder / "build"
        self.suites = suites
        self.seconds = {}
        self.process = None
        self.alone = {suite.name: set() for suite in suites}

    def run(self, command, seconds, log):
        """The exit status, or None where it did not end in time."""
        with open(log, "wb") as output:
            self.process = process = subprocess.Popen(
                [str(word) for word in command], stdout=output, stderr=output, stdin=subprocess.DEVNULL,
                start_new_session=True, env={**os.environ, "QUORVANE_OWN_DISPLAY": "1"},
            )
            try:
                return process.wait(seconds)
            except subprocess.TimeoutExpired:
                return None
            finally:
                self.end()

    def end(self):
        if self.process is not None and self.process.poll() is None:
            os.killpg(self.process.pid, signal.SIGKILL)
            self.process.wait()

    def make(self, targets, seconds=BUILD_SECONDS):
        command = ["cmake", "--build", self.build, "-j1", "--target", *targets]
        return self.run(command, seconds, self.folder / "build.log") == 0

    def test(self, suite, seconds, options="--gtest_fail_fast"):
        """One process runs all cases but those that want one of their own, and these follow."""
        files = self.build / "test-files"
        files.mkdir(exist_ok=True)
        alone = sorted(self.alone[suite.name])
        joined = "-" if "-" not in suite.filter else ":"
        filters = [suite.filter + (joined + ":".join(alone) if alone else ""), *alone]
        executable = self.build / "bin" / suite.name
        script = f'for filter; do "{executable}" --gtest_filter="$filter" --gtest_brief=1 {options} || exit 1; done'
        # A display costs a third of a second, and which test wants one is not known here.
        command = [
            self.source / "tests/mutation/confined", self.folder, files, self.source / "scripts/with-display",
            "bash", "-c", script, suite.name, *filters,
        ]
        return self.run(command, seconds, self.folder / f"{suite.name}.log")

    def separate(self, suite):
        """Whether the suite passes, and how long it takes. Cases that fail in one process with others are put into
        one of their own."""
        for _ in range(SEPARATIONS):
            begin = time.monotonic()
            if self.test(suite, FIRST_RUN_SECONDS, options="") == 0:
                self.seconds[suite.name] = time.monotonic() - begin
                return True
            log = (self.folder / f"{suite.name}.log").read_text(errors="replace")
            failed = set(re.findall(r"^\[  FAILED  \] ([\w/]+\.[\w/]+)", log, re.M)) - self.alone[suite.name]
            if not failed:
                return False
            self.alone[suite.name] |= failed
        return False

    def copy(self):
        """Brings the copy up to date; what is unchanged keeps its time, and is not compiled again."""
        names = subprocess.run(
            ["git", "ls-files", "-co", "--exclude-standard", "-z"], cwd=ROOT, check=True, capture_output=True, text=True
        ).stdout.split("\0")
        for name in filter(None, names):
            there, here = ROOT / name, self.source / name
            if not there.exists():
                continue
            if here.exists() and here.read_bytes() == there.read_bytes():
                continue
            here.parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(there, here, follow_symlinks=False)

    def prepare(self):
        """Builds the product as it is and runs every suite: what fails now could not tell anything later."""
        self.source.mkdir(parents=True, exist_ok=True)
        self.copy()
        command = [
            "cmake", "-S", self.source, "-B", self.build, "-G", "Ninja", "-DCMAKE_BUILD_TYPE=RelWithDebInfo",
            f"-DCMAKE_PROJECT_quorvane_INCLUDE={self.source}/tests/mutation/unoptimised.cmake",
        ]
        targets = {name for suite in self.suites for name in (suite.name, *suite.starts)}
        log = self.folder / "build.log"
        if self.run(command, BUILD_SECONDS, log) != 0 or not self.make(sorted(targets), 3600):
            sys.exit(f"mutate: the product itself did not build; see {log}")
        for suite in self.suites:
            if not self.separate(suite):
                sys.exit(f"mutate: without a change {suite.name} failed; see {self.folder / suite.name}.log")
            print(f"mutate: {suite.name} takes {self.seconds[suite.name]:.1f} s", flush=True)

    def fate(self, mutant, suites):
        file = self.source / mutant.file
        text = file.read_text()
        file.write_text(mutant.applied(text))
        try:
            for suite in suites:
                if not self.make(suite.targets()):
                    return "did not build"
                status = self.test(suite, 20 + 5 * self.seconds[suite.name])
                if status is None:
                    return f"timed out in {suite.name}"
                if status != 0:
                    return f"killed by {suite.name}"
            return "survived"
        finally:
            file.write_text(text)


def work(job, waiting, suites_for, report):
    while True:
        try:
            mutant = waiting.get_nowait()
        except queue.Empty:
            return
        report(mutant, job.fate(mutant, suites_for(mutant.file)))


def survivors_of_last_run(names):
    rows = [row.split("\t") for row in (WORK / "mutants.tsv").read_text().splitlines()]
    survived = {(place.split(":")[0], before, after) for place, _, fate, before, after in rows if fate == "survived"}
    found = (mutant for name in names for mutant in places.mutants(name, (ROOT / name).read_text()))
    return [mutant for mutant in found if mutant.key() in survived - listed_survivors()]


def judge(picked, jobs, suites_for, table_name):
    """The fate of every mutant, printed and written as it becomes known."""
    suites = list(dict.fromkeys(suite for mutant in picked for suite in suites_for(mutant.file)))
    workers = [Job(number + 1, suites) for number in range(jobs)]

    def stop(*_):
        for job in workers:
            job.end()
        os._exit(1)

    signal.signal(signal.SIGTERM, stop)
    signal.signal(signal.SIGINT, stop)
    for job in workers:
        job.prepare()
    listed = listed_survivors()
    waiting = queue.Queue()
    for mutant in picked:
        waiting.put(mutant)
    counts = Counter()
    lock = threading.Lock()
    with open(WORK / table_name, "w") as table:

        def report(mutant, fate):
            if fate == "survived" and mutant.key() in listed:
                fate = "survived as listed"
            row = "\t".join((f"{mutant.file}:{mutant.line}", mutant.kind, fate, mutant.before, mutant.after))
            with lock:
                counts[fate] += 1
                print(row, flush=True)
                print(row, file=table, flush=True)

        threads = [threading.Thread(target=work, args=(job, waiting, suites_for, report)) for job in workers]
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join()
    return counts


def arguments():
    parser = argparse.ArgumentParser(prog="scripts/mutate")
    parser.add_argument("--count", type=int, default=300)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--only", action="append", metavar="FILE")
    parser.add_argument("--jobs", type=int, default=1)
    parser.add_argument("--again", action="store_true")
    parser.add_argument("--list", action="store_true")
    return parser.parse_args()


def main():
    asked = arguments()
    names = files()
    for name in asked.only or []:
        if name not in names:
            sys.exit(f"mutate: no source file {name} in {', '.join(FOLDERS)}")
    names = asked.only or names
    picked = survivors_of_last_run(names) if asked.again else chosen(names, asked.count, asked.seed)
    if asked.list:
        for mutant in picked:
            print(f"{mutant.file}:{mutant.line}", mutant.kind, mutant.before, mutant.after, sep="\t")
        return 0
    if asked.again:
        counts = judge(picked, asked.jobs, suites_again, "mutants-again.tsv")
    else:
        counts = judge(picked, asked.jobs, suites_of, "mutants.tsv")
    print(f"mutate: {len(picked)} mutants")
    for fate, count in sorted(counts.items()):
        print(f"mutate: {count:5} {fate}")
    return 1 if counts["survived"] else 0


if __name__ == "__main__":
    sys.exit(main())
