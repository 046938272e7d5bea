#!/usr/bin/env bash
# A build of downloads: the first one, with all workers and with one; one in which nothing changed;
# and one in which a byte of the application changed, each also as a ratio to the first. For a small
# application with the runtime that jdeps finds for it, and for one of 20 MB with all of java.se.
# Usage: scripts/bench packager [ROUNDS [SIZE ...]]   (3; small and large)
set -euo pipefail
cd "$(dirname "$0")/.."

build=$QUORVANE_BENCH_BUILD
rounds=${1:-${QUORVANE_BENCH_SHORT:-3}}
shift || true
sizes=(small large)
if [ -n "$QUORVANE_BENCH_SHORT" ]; then
  sizes=(tiny)
fi
jdk=$(dirname "$(dirname "$(readlink -f "$(command -v javac)")")")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

quietly() { "$@" > "$work/quiet" 2>&1 || { cat "$work/quiet" >&2; echo "bench: this failed: $*" >&2; exit 1; }; }

quietly cmake --build "$build" --target packager
quietly "$jdk/bin/javac" -d "$work/classes" bench/startup/Startup.java
install -m 600 tests/data/keys/first.pem "$work/release.key"
python3 bench/packager/measure.py "$rounds" "$work" "$build/bin/quorvane-pack" "$jdk" "${@:-${sizes[@]}}"
