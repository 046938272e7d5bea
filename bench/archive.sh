#!/usr/bin/env bash
# The extraction of archives beside tar, and its peak memory. TMPDIR needs six gigabytes.
# Usage: [ROUNDS=N] [BESIDE=BIN] scripts/bench archive   (15 rounds; BIN: the programs of another build)
set -euo pipefail

build=$QUORVANE_BENCH_BUILD
if [ -n "$QUORVANE_BENCH_SHORT" ]; then
  export ROUNDS=1 MEGABYTES="1 10"
fi
cmake --build "$build" --target archive_extract archive_extract_quiet archive_extract_own_log quorvane-pack |
  { grep -E 'error|FAILED' || true; }
jdk=$(dirname "$(dirname "$(readlink -f "$(command -v javac)")")")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
key=$work/release.key
install -m 600 tests/data/keys/first.pem "$key"
mkdir "$work/measured"
python3 bench/archive/measure.py "$build/bin" "$work/measured" "$jdk" "$key"
