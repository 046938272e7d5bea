#!/usr/bin/env bash
# Installations that start at the same moment and look for updates at one small site, which sends away
# what it cannot serve at once.
# Usage: scripts/bench crowd [INSTALLATIONS [SPREAD_MS [ARCHIVE_BYTES]]]   (1000; 30000; 1000000)
set -euo pipefail
cd "$(dirname "$0")/.."

build=$QUORVANE_BENCH_BUILD
clients=${1:-${QUORVANE_BENCH_SHORT:+20}}
spread=${2:-${QUORVANE_BENCH_SHORT:+500}}
jdk=$(dirname "$(dirname "$(readlink -f "$(command -v javac)")")")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

quietly() { "$@" > "$work/quiet" 2>&1 || { cat "$work/quiet" >&2; echo "bench: this failed: $*" >&2; exit 1; }; }

quietly cmake --build "$build" --target quorvane_updater
tests=updater/tests/java/org/example/updater
quietly "$jdk/bin/javac" -cp "$build/updater/updater.jar" --release 11 -encoding UTF-8 -d "$work/classes" \
  "$tests/Crowd.java" "$tests/TestSite.java" "$tests/Trees.java"
"$jdk/bin/java" -cp "$build/updater/updater.jar:$work/classes" org.example.updater.Crowd \
  "${clients:-1000}" "${spread:-30000}" "${3:-1000000}"
