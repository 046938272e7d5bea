"""Measures how the work grows with its size; bench/scale.sh prepares what it needs.

Usage: measure.py ROUNDS WORK BIN   (WORK: runtime/, updater/ and app/)

The environment says what: KINDS names the measurements, INSTALLS, ARCHIVES, CLASS_PATHS, VERSIONS and
LOGS their sizes.
"""

import os

from archives import measure_archives
from common import Table
from installs import make_installer, measure_installs
from starts import measure_class_paths, measure_logs, measure_versions

KINDS = {"archives": measure_archives, "classpaths": measure_class_paths,
         "versions": measure_versions, "logs": measure_logs, "installs": measure_installs}


def main():
    make_installer()
    print("medians; starts are from exec to the first line of Java's main, and their unit's time is what "
          "is above the smallest case's; beside installations: the same archives decompressed by xz, "
          "hashed by sha256sum and copied\n")
    table = Table()
    for kind in os.environ.get("KINDS", " ".join(KINDS)).split():
        KINDS[kind](table)


main()
