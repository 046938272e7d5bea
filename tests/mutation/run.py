"""Judges mutants of the product, one changed place each, by the tests that should notice. See scripts/mutate."""

import argparse
import json
import os
import queue
import random
import shlex
import shutil
import signal
import subprocess
import sys
import threading
import re
from collections import Counter, defaultdict
from dataclasses import dataclass
from itertools import islice, zip_longest
from pathlib import Path

import mutants as places
from weave import Woven

ROOT = Path(__file__).resolve().parents[2]
WORK = ROOT / "build-mutation"
SOURCE = WORK / "source"
BUILD = WORK / "build"
FILES = BUILD / "test-files"
FOLDERS = ("archive", "crypto", "extractor", "support")


@dataclass(frozen=True)
class Suite:
    """A test executable and which of its cases run. A test that makes files for the product is not changed itself."""

    name: str
    own: str = ""
    filter: str = "*"
    is_spared: bool = False
    environment: str = ""


# What waits, fills a disk or ends an installer at random is left out.
SUITES = (
    Suite("archive_test", "archive"),
    Suite("archive_tools_test", "archive"),
    Suite("crypto_test", "crypto"),
    Suite("extractor_test", "extractor"),
    Suite("support_test", "support"),
    Suite("downloader_test", "support"),
    Suite("deleting_race_test", "support"),
    Suite("cocoa_test", "support"),
    Suite("text_encoding_test", "support", environment="GNUSTEP_STRING_ENCODING=NSMacOSRomanStringEncoding"),
    Suite("splash_test", "support", is_spared=True),
    Suite("application_launch_test", "support", is_spared=True),
    Suite("installer_test", "extractor", "*-*Minute*", is_spared=True),
    Suite("hostile_installer_test", "extractor", "*-*AnyMoment*:*FullDisk*:*Eight*:*RunningApplication*", is_spared=True),
    Suite("alert_test", is_spared=True),
)


def sources():
    listed = subprocess.run(
        ["git", "ls-files", "-z", *(f"{folder}/" for folder in FOLDERS)],
        cwd=ROOT, check=True, capture_output=True, text=True,
    ).stdout.split("\0")
    return sorted(name for name in listed if name.endswith((".cpp", ".mm")) and (ROOT / name).exists())


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


running = set()


def start(command, **options):
    """Starts a process that ends with this one, as do those that it starts."""
    words = [str(word) for word in command]
    process = subprocess.Popen(words, stdin=subprocess.DEVNULL, start_new_session=True, **options)
    running.add(process)
    return process


def stop(*_):
    for process in list(running):
        if process.poll() is None:
            os.killpg(process.pid, signal.SIGTERM)
            process.wait()
    os._exit(1)


def run(command, log):
    with open(log, "wb") as output:
        process = start(command, stdout=output, stderr=output)
    status = process.wait()
    running.discard(process)
    return status


def write_changed(path, data):
    """What is unchanged keeps its time, and is not compiled again."""
    if not path.exists() or path.read_bytes() != data:
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(data)


def copy_sources():
    names = subprocess.run(
        ["git", "ls-files", "-co", "--exclude-standard", "-z"], cwd=ROOT, check=True, capture_output=True, text=True
    ).stdout.split("\0")
    names = {name for name in names if name and (ROOT / name).exists()}
    for path in SOURCE.rglob("*"):
        if (path.is_file() or path.is_symlink()) and str(path.relative_to(SOURCE)) not in names:
            path.unlink()
    woven = set(sources())
    for name in names - woven:
        write_changed(SOURCE / name, (ROOT / name).read_bytes())
        shutil.copymode(ROOT / name, SOURCE / name)
    for name in woven:
        if not (SOURCE / name).exists():
            write_changed(SOURCE / name, (ROOT / name).read_bytes())


def configure():
    command = [
        "cmake", "-S", SOURCE, "-B", BUILD, "-G", "Ninja", "-DCMAKE_BUILD_TYPE=RelWithDebInfo",
        f"-DCMAKE_PROJECT_quorvane_INCLUDE={SOURCE}/tests/mutation/unoptimised.cmake",
    ]
    if run(command, WORK / "build.log") != 0:
        sys.exit(f"mutate: the product itself could not be configured; see {WORK}/build.log")


def with_switch(name, woven):
    return f'#include "tests/mutation/switch.h"\n#line 1\n{woven}'.encode()


def compiled(command, path, woven):
    """The lines that the compiler does not take."""
    path.write_bytes(with_switch(path.name, woven))
    result = subprocess.run(command, cwd=BUILD, capture_output=True, text=True)
    errors = re.findall(r"^(.+?):(\d+):\d+: (?:fatal )?error:", result.stderr, re.M)
    lines = sorted({int(line) for file, line in errors if Path(BUILD, file).resolve() == path.resolve()})
    return (lines or [1]) if result.returncode != 0 else []


def weave(name, numbered, commands):
    """Writes the file with all of its mutants that the compiler takes so, and returns their numbers."""
    text = (ROOT / name).read_text()
    target = SOURCE / name
    trial = target.with_name("woven-" + target.name)
    words = shlex.split(commands[str(target)])
    command = [str(trial) if word == str(target) else word for word in words[: words.index("-o")]]
    command += ["-I", str(SOURCE), "-fsyntax-only", "-c", str(trial)]
    command = [word for at, word in enumerate(command) if word != "-c" or at == len(command) - 2]
    command = [word for at, word in enumerate(command) if word != str(trial) or at == len(command) - 1]
    kept = list(numbered)
    try:
        while kept:
            woven = Woven(text, kept)
            wrong = compiled(command, trial, woven.output)
            if not wrong:
                break
            refused = set().union(*(woven.numbers_at(line) for line in wrong))
            # An array that is as long as a constant says is refused where it stands, not where the constant does.
            refused = refused or {number for number, mutant in kept if mutant.kind == "constant"} or woven.numbers()
            kept = [(number, mutant) for number, mutant in kept if number not in refused]
    finally:
        trial.unlink(missing_ok=True)
    woven = Woven(text, kept)
    write_changed(target, with_switch(name, woven.output) if kept else text.encode())
    return woven.numbers() if kept else set()


def weave_all(picked):
    """Numbers the mutants from 1 and returns those that can be switched on."""
    entries = json.loads((BUILD / "compile_commands.json").read_text())
    commands = {}
    for entry in entries:
        commands.setdefault(str(Path(entry["directory"], entry["file"]).resolve()), entry["command"])
    by_file = defaultdict(list)
    for number, mutant in picked.items():
        by_file[mutant.file].append((number, mutant))
    numbers = set()
    for name in sources():
        numbers |= weave(name, by_file[name], commands)
    return numbers


def build(jobs):
    command = ["cmake", "--build", BUILD, f"-j{jobs}", "--target", *(suite.name for suite in SUITES)]
    if run(command, WORK / "build.log") != 0:
        sys.exit(f"mutate: the woven product did not build; see {WORK}/build.log")


def cases_of(suite):
    executable = BUILD / "bin" / suite.name
    listed = subprocess.run(
        [executable, "--gtest_list_tests", f"--gtest_filter={suite.filter}"],
        check=True, capture_output=True, text=True, cwd=FILES,
    ).stdout
    group = ""
    for line in listed.splitlines():
        word = line.split("#")[0]
        if re.match(r"\S+\.\s*$", word):
            group = word.strip()
        elif word.startswith("  "):
            yield {
                "executable": str(executable), "spared": suite.name if suite.is_spared else "",
                "name": group + word.strip(), "own": suite.own, "seconds": 60, "environment": suite.environment,
            }


class Confinement:
    """Runs cases where a mutant can do no harm, one set at a time."""

    def __init__(self, number):
        self.folder = WORK / f"job-{number}"
        self.folder.mkdir(parents=True, exist_ok=True)

    def results(self, chosen, cases, seconds=0):
        asked = self.folder / "asked.json"
        asked.write_text(json.dumps({"chosen": chosen, "seconds": seconds, "cases": cases}))
        command = [
            SOURCE / "tests/mutation/confined", WORK, FILES, SOURCE / "scripts/with-display",
            "python3", SOURCE / "tests/mutation/cases.py", asked,
        ]
        with open(self.folder / "confined.log", "wb") as log:
            process = start(
                command, stdout=subprocess.PIPE, stderr=log, text=True, env={**os.environ, "QUORVANE_OWN_DISPLAY": "1"}
            )
        results = [json.loads(line) for line in process.stdout]
        process.wait()
        running.discard(process)
        if not results or "end" not in results.pop():
            print(f"mutate: the cases could not be run; see {self.folder}/confined.log", flush=True)
            stop()
        return results


def in_threads(confinements, work):
    threads = [threading.Thread(target=work, args=(confinement,)) for confinement in confinements]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()


def recorded(picked, confinements, is_continued):
    """Every case that passes without a change, with how long it takes and which mutants it reaches. A run that is
    continued looks only at those that there were not, or that failed."""
    keys = [list(mutant.key()) for mutant in picked.values()]
    path = WORK / "cases.json"
    usable = []
    if is_continued:
        earlier = json.loads(path.read_text())
        if earlier["mutants"] != keys:
            sys.exit("mutate: the run to be continued was one of other mutants")
        usable = [{**case, "reached": set(case["reached"]), "is_new": False} for case in earlier["cases"]]
    known = {(case["executable"], case["name"]) for case in usable}
    cases = [case for suite in SUITES for case in cases_of(suite)]
    usable += record([case for case in cases if (case["executable"], case["name"]) not in known], confinements)
    print(f"mutate: {len(usable)} of {len(cases)} cases take {sum(case['seconds'] for case in usable):.0f} s", flush=True)
    saved = [{**case, "reached": sorted(case["reached"])} for case in usable]
    path.write_text(json.dumps({"mutants": keys, "cases": saved}))
    return usable


def record(cases, confinements):
    """Those that pass without a change, with how long they take and which mutants they reach."""
    waiting = queue.Queue()
    for at in range(0, len(cases), 20):
        waiting.put(cases[at : at + 20])
    usable = []

    def work(confinement):
        while True:
            try:
                some = waiting.get_nowait()
            except queue.Empty:
                return
            for case, result in zip(some, confinement.results(0, some)):
                if result["status"] == 0:
                    usable.append({**case, "seconds": result["seconds"], "reached": set(result["reached"]), "is_new": True})
                else:
                    print(f"mutate: fails without a change, is not used: {case['name']}", flush=True)
                    (WORK / "failed.log").open("a").write(f"{case['name']}\n{result['said']}\n")

    in_threads(confinements, work)
    return usable


def worth_trying(number, mutant, usable, kills, is_again):
    """The cases that reach the mutant: what killed its neighbours, then its folder's own, the short ones first that
    reach little else; for a survivor those first that were not there when it was tried."""
    folder = mutant.file.split("/")[0]

    def rank(case):
        others = not case["is_new"] if is_again else case["own"] != folder
        return (-kills[(mutant.file, case["name"])], others, case["seconds"] * len(case["reached"]))

    for case in sorted((case for case in usable if number in case["reached"]), key=rank):
        yield {name: case[name] for name in ("executable", "spared", "name", "seconds", "environment")}


def fate(confinement, number, mutant, usable, kills, seconds, is_again):
    cases = list(worth_trying(number, mutant, usable, kills, is_again))
    if not cases:
        return "survived unreached"
    for result in confinement.results(number, cases, seconds):
        if result["passes"]:
            kills[(mutant.file, result["case"])] += 1
            return f"{'timed out in' if result['status'] is None else 'killed by'} {result['case']}"
    return "survived"


def judged_before(table):
    """The fates in a table by the mutants' keys."""
    rows = [row.split("\t") for row in table.read_text().splitlines()]
    return {(place.rsplit(":", 1)[0], before, after): what for place, _, what, before, after in rows}


def judge(picked, numbers, confinements, usable, seconds, earlier, is_again):
    """The fate of every mutant, printed and written as it becomes known, where it is not known already."""
    listed = listed_survivors()
    waiting = queue.Queue()
    counts, kills, lock = Counter(), Counter(), threading.Lock()
    table = open(WORK / "mutants.tsv", "w")

    def report(mutant, what):
        if what.startswith("survived") and mutant.key() in listed:
            what = "survived as listed"
        row = "\t".join((f"{mutant.file}:{mutant.line}", mutant.kind, what, mutant.before, mutant.after))
        with lock:
            counts[(mutant.file.split("/")[0], mutant.kind, what.split(" by ")[0].split(" in ")[0])] += 1
            print(row, flush=True)
            print(row, file=table, flush=True)

    def work(confinement):
        while True:
            try:
                number = waiting.get_nowait()
            except queue.Empty:
                return
            report(picked[number], fate(confinement, number, picked[number], usable, kills, seconds, is_again))

    for number, mutant in picked.items():
        if number not in numbers:
            report(mutant, "cannot be switched")
        elif mutant.key() in earlier:
            report(mutant, earlier[mutant.key()])
        else:
            waiting.put(number)
    in_threads(confinements, work)
    return counts


def arguments():
    parser = argparse.ArgumentParser(prog="scripts/mutate")
    parser.add_argument("--count", type=int, default=400)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--seconds", type=int, default=20)
    parser.add_argument("--only", action="append", metavar="FILE")
    parser.add_argument("--jobs", type=int, default=2)
    parser.add_argument("--again", action="store_true")
    parser.add_argument("--resume", action="store_true")
    parser.add_argument("--list", action="store_true")
    return parser.parse_args()


def summary(counts):
    for column, name in enumerate(("folder", "kind", "fate")):
        sums = Counter()
        for key, count in counts.items():
            sums[key[column]] += count
        print(f"mutate: by {name}: " + ", ".join(f"{key} {count}" for key, count in sorted(sums.items())))


def main():
    asked = arguments()
    names = sources()
    for name in asked.only or []:
        if name not in names:
            sys.exit(f"mutate: no source file {name} in {', '.join(FOLDERS)}")
    names = asked.only or names
    chosen_ones = chosen(names, asked.count, asked.seed)
    if asked.list:
        for mutant in chosen_ones:
            print(f"{mutant.file}:{mutant.line}", mutant.kind, mutant.before, mutant.after, sep="\t")
        return 0
    signal.signal(signal.SIGTERM, stop)
    signal.signal(signal.SIGINT, stop)
    picked = dict(enumerate(chosen_ones, start=1))
    FILES.mkdir(parents=True, exist_ok=True)
    copy_sources()
    configure()
    numbers = weave_all(picked)
    print(f"mutate: {len(numbers)} of {len(picked)} mutants can be switched on", flush=True)
    build(asked.jobs)
    confinements = [Confinement(number) for number in range(asked.jobs)]

    is_continued = asked.again or asked.resume
    usable = recorded(picked, confinements, is_continued)
    earlier = judged_before(WORK / "mutants.tsv") if is_continued else {}
    if asked.again:
        listed = listed_survivors()
        earlier = {key: what for key, what in earlier.items() if not what.startswith("survived") or key in listed}
    counts = judge(picked, numbers, confinements, usable, asked.seconds, earlier, asked.again)
    summary(counts)
    return 1 if any(fate in ("survived", "survived unreached") for _, _, fate in counts) else 0


if __name__ == "__main__":
    sys.exit(main())
