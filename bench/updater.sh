#!/usr/bin/env bash
# From the start of Java to the first line of the application's main, through the updater, and through
# others that are named.
# Usage: scripts/bench updater [ROUNDS [UPDATER_JAR...]]   (40)
set -euo pipefail
cd "$(dirname "$0")/.."

build=$QUORVANE_BENCH_BUILD
rounds=${1:-${QUORVANE_BENCH_SHORT:-40}}
shift || true
jdk=$(dirname "$(dirname "$(readlink -f "$(command -v javac)")")")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

quietly() { "$@" > "$work/quiet" 2>&1 || { cat "$work/quiet" >&2; echo "bench: this failed: $*" >&2; exit 1; }; }

quietly cmake --build "$build" --target quorvane_updater
quietly "$jdk/bin/javac" -d "$work/classes" bench/startup/Startup.java
python3 bench/updater/updater.py "$rounds" "$work" "$work/classes" "$@" "$build/updater/updater.jar"
