"""Prints the speeds in a Google Benchmark result file, and the ratios of chosen pairs.

Usage: ratios.py RESULTS.json A/B ...

A and B are benchmarks that both ran with the same arguments, and a ratio above 1 says that A is
faster. Speeds are of CPU time: the median of the repetitions, and the best one, which says more on
a machine that has other work to do.
"""

import collections
import json
import statistics
import sys


def speeds_of(path):
    speeds = collections.defaultdict(list)
    with open(path) as file:
        for run in json.load(file)["benchmarks"]:
            if run.get("error_occurred"):
                sys.exit(f"ratios: {run['name']}: {run['error_message']}")
            if run["run_type"] == "iteration":
                name, _, argument = run["name"].partition("/")
                speeds[name, int(argument)].append(run["bytes_per_second"])
    return speeds


def main():
    speeds = speeds_of(sys.argv[1])
    print(f"{'':18} {'bytes':>9} {'median MB/s':>12} {'best MB/s':>10}")
    for (name, size), values in sorted(speeds.items()):
        print(f"{name:18} {size:9} {statistics.median(values) / 1e6:12.1f} {max(values) / 1e6:10.1f}")
    print(f"\n{'ratio':32} {'bytes':>9} {'of medians':>11} {'of bests':>9}")
    for pair in sys.argv[2:]:
        a, b = pair.split("/")
        for size in sorted(size for name, size in speeds if name == a):
            ours, theirs = speeds[a, size], speeds[b, size]
            medians = statistics.median(ours) / statistics.median(theirs)
            print(f"{pair:32} {size:9} {medians:11.3f} {max(ours) / max(theirs):9.3f}")


main()
