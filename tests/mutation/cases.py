"""Runs cases of tests inside of tests/mutation/confined, each in a process of its own, and prints what became of
each as a line of JSON. The argument is a file of JSON: {"chosen": number, "seconds": number, "cases": [{"executable", "spared", "name",
"seconds", "environment"}, ...]}. With the mutant 0 each case runs and says which mutants it reached; with another one, until a
case fails that passes without the mutant, or the seconds are over."""

import json
import mmap
import os
import signal
import struct
import subprocess
import sys
import time

PAGE = "/dev/shm/quorvane-mutant"
HEAD, WHOLE = 64, 65536


class Page:
    def __init__(self):
        with open(PAGE, "wb") as file:
            file.write(bytes(WHOLE))
        os.chmod(PAGE, 0o666)
        with open(PAGE, "r+b") as file:
            self.memory = mmap.mmap(file.fileno(), WHOLE)

    def choose(self, number, spared):
        self.memory[:HEAD] = struct.pack("i60s", number, spared.encode())
        self.memory[HEAD:] = bytes(WHOLE - HEAD)

    def reached(self):
        return [number for number, byte in enumerate(self.memory[HEAD:]) if byte]


def run(case):
    """The exit status, or None where it did not end in time."""
    command = ["env", *case["environment"].split(), case["executable"], f"--gtest_filter={case['name']}"]
    with open("/tmp/case.log", "wb") as log:
        process = subprocess.Popen(
            command, stdin=subprocess.DEVNULL, stdout=log, stderr=log, start_new_session=True
        )
        try:
            return process.wait(15 + 8 * case["seconds"])
        except subprocess.TimeoutExpired:
            return None
        finally:
            try:
                os.killpg(process.pid, signal.SIGKILL)
            except ProcessLookupError:
                pass
            process.wait()


def said():
    with open("/tmp/case.log", "rb") as log:
        return log.read()[-2000:].decode(errors="replace")


def record(page, cases):
    """A case that compares times may need a second run on a busy machine."""
    for case in cases:
        page.choose(0, case["spared"])
        for _ in range(3):
            begin = time.monotonic()
            status = run(case)
            seconds = time.monotonic() - begin
            if status == 0:
                break
        yield {"status": status, "seconds": seconds, "reached": page.reached(), "said": "" if status == 0 else said()}


def judge(page, cases, chosen, seconds):
    begin = time.monotonic()
    for case in cases:
        if time.monotonic() - begin > seconds:
            return
        page.choose(chosen, case["spared"])
        status = run(case)
        if status == 0:
            continue
        what = said()
        page.choose(0, case["spared"])
        passes = run(case) == 0
        yield {"case": case["name"], "status": status, "passes": passes, "said": what}
        if passes:
            return


def main():
    with open(sys.argv[1]) as file:
        asked = json.load(file)
    page = Page()
    results = judge(page, asked["cases"], asked["chosen"], asked["seconds"]) if asked["chosen"] else record(page, asked["cases"])
    for result in results:
        print(json.dumps(result), flush=True)
    print(json.dumps({"end": True}), flush=True)


main()
