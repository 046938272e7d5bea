"""The hosted workflow, with actionlint, where Go is there to build that."""

import os
import re
import shutil
import subprocess

import mach_o

TOOL = "github.com/rhysd/actionlint/cmd/actionlint"
VERSION = "v1.7.12"
FOLDER = mach_o.SOURCE / f"build-macos/tools/actionlint-{VERSION}"
WORKFLOWS = mach_o.SOURCE / ".github/workflows"

# What is planted in a copy of the workflow, and has to be found.
FAULTS = {
    "a misspelt key": ("    runs-on: ubuntu-22.04\n", "    runs-in: ubuntu-22.04\n"),
    "a machine that there is not": ("runs-on: ubuntu-22.04\n", "runs-on: ubuntu-12.04\n"),
    "a value that no step has": ("${{ steps.test.outcome", "${{ steps.tests.outcome"),
    "a value that the matrix lacks": ("${{ matrix.arch }}", "${{ matrix.architecture }}"),
}


def build_tool():
    """Why actionlint is unavailable, or None. Go checks downloads against its database of hashes."""
    if (FOLDER / "actionlint").is_file():
        return None
    if not shutil.which("go"):
        return "Go, which builds actionlint, is not installed"
    done = subprocess.run(["go", "install", f"{TOOL}@{VERSION}"], cwd="/", capture_output=True, text=True,
                          env=os.environ | {"GOBIN": str(FOLDER)})
    return f"Go cannot build actionlint: {done.stderr.strip().splitlines()[-1]}" if done.returncode else None


def problems_in(text):
    done = subprocess.run([FOLDER / "actionlint", "-shellcheck=", "-pyflakes=", "-no-color", "-oneline", "-"],
                          input=text, capture_output=True, text=True)
    return done.stdout.splitlines() or ([done.stderr] if done.returncode else [])


def check_workflow(report):
    paths = sorted(WORKFLOWS.glob("*.yml"))
    report.check("there is a hosted workflow", paths)
    for path in paths:
        text = path.read_text()
        report.check(f"{path.name} says of itself that it has not run, or docs/macos.md what it showed",
                     "has not run yet" in text.split("\nname:")[0])
        scripts = set(re.findall(r"\b(scripts/[\w-]+)", text))
        missing = [name for name in sorted(scripts) if not os.access(mach_o.SOURCE / name, os.X_OK)]
        report.check(f"{path.name} calls scripts that there are", scripts and not missing, missing)
    reason = build_tool()
    if reason:
        report.skip("actionlint finds nothing wrong with the hosted workflow", reason, everywhere=True)
        return
    for path in paths:
        text = path.read_text()
        report.check(f"actionlint finds nothing wrong with {path.name}", not problems_in(text), problems_in(text))
        for title, (right, wrong) in FAULTS.items():
            report.check(f"actionlint finds {title}", right in text and problems_in(text.replace(right, wrong)))
