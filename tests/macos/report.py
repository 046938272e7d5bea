"""Counts what passes, what fails and what is skipped, one line each."""

import os


class Report:
    def __init__(self):
        self.passed = 0
        self.failed = 0
        self.skipped = 0

    def check(self, name, succeeded, details=()):
        """Records one check; `details` are printed, one per line, when it failed."""
        print(("pass  " if succeeded else "FAIL  ") + name)
        if succeeded:
            self.passed += 1
            return
        self.failed += 1
        for detail in details:
            print("        " + str(detail))

    def equal(self, name, actual, expected):
        """Passes when both are equal."""
        self.check(name, actual == expected, [f"expected {expected!r}", f"found    {actual!r}"])

    def same_names(self, name, actual, expected):
        """Passes when both hold the same names, in any order."""
        missing = [f"missing: {entry}" for entry in sorted(set(expected) - set(actual))]
        surplus = [f"not expected: {entry}" for entry in sorted(set(actual) - set(expected))]
        self.check(name, not missing and not surplus, missing + surplus)

    def skip(self, name, reason, everywhere=False):
        """Records a check that cannot be made here, which is a failure where CI=true but for those that may
        be skipped everywhere."""
        if os.environ.get("CI") == "true" and not everywhere:
            self.check(name, False, [f"could not be made: {reason}"])
            return
        print(f"skip  {name}: {reason}")
        self.skipped += 1

    def finish(self):
        """Prints the summary and returns the exit status."""
        if self.skipped:
            print(f"{self.skipped} skipped")
        print(f"{self.passed} passed, {self.failed} failed")
        return 1 if self.failed or not self.passed else 0
