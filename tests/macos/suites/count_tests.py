#!/usr/bin/env python3
"""Says how many tests ran on the executables built for macOS, and which were left out and why.

Usage: tests/macos/suites/count_tests.py CTEST_JUNIT_FILE

Fails when a test failed or skipped itself, when fewer ran than the suites have had for long, and when
a pattern of not_run.txt matches no test.
"""

import re
import subprocess
import sys
import xml.etree.ElementTree as ElementTree
from pathlib import Path

HERE = Path(__file__).resolve().parent
SOURCE = HERE.parents[2]
LEAST = 250


def left_out():
    """(suite, pattern, reason) of each line of the list."""
    for line in (HERE / "not_run.txt").read_text().splitlines():
        if line.strip() and not line.startswith("#"):
            name, reason = line.split(None, 1)
            yield *name.split(".", 1), reason


def cases(suite, pattern):
    text = subprocess.run([SOURCE / "build/bin" / suite, "--gtest_list_tests",
                           f"--gtest_filter={pattern}"], check=True, capture_output=True,
                          text=True).stdout
    return re.findall(r"^  (\S+)", text, re.M)


def main():
    results = ElementTree.parse(sys.argv[1]).getroot().findall("testcase")
    status = {}
    for result in results:
        status.setdefault(result.get("status"), []).append(result.get("name"))
    wrong = [name for kind, names in status.items() if kind != "run" for name in names]
    for name in wrong:
        print(f"did not pass: {name}")
    not_run = 0
    for suite, pattern, reason in left_out():
        count = len(cases(suite, pattern))
        not_run += count
        print(f"not run: {count:3} of {suite}: {reason}")
        if not count:
            wrong.append(pattern)
            print(f"  {pattern} matches no test: take the line out")
    passed = status.get("run", [])
    ran = sum(name.startswith("macho.") for name in passed)
    print(f"{ran} tests ran on the macOS executables, {len(results) - len(passed)} did not pass, "
          f"{not_run} are not run there; the runner itself has {len(passed) - ran} tests")
    return 1 if wrong or ran <= LEAST else 0


if __name__ == "__main__":
    sys.exit(main())
