#!/usr/bin/env bash
# The decompression of archives by lzma64 beside xz: a runtime made with jlink, and jars, which are compressed
# already. The archives are packed first, which takes a minute; TMPDIR needs a gigabyte.
# Usage: scripts/bench decompress [ROUNDS]   (11)
set -euo pipefail

build=$QUORVANE_BENCH_BUILD
rounds=${1:-${QUORVANE_BENCH_SHORT:-11}}
jdk=$(dirname "$(dirname "$(readlink -f "$(command -v javac)")")")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

quietly() { "$@" > "$work/quiet" 2>&1 || { cat "$work/quiet" >&2; echo "bench: this failed: $*" >&2; exit 1; }; }

quietly cmake --build "$build" --target lzma64 quorvane-pack
mkdir "$work/jars"
cp -L /usr/share/maven/lib/*.jar "$work/jars"
quietly "$build/bin/quorvane-pack" archive create "$work/jars" "$work/jars.p2.l2"
if [ -z "$QUORVANE_BENCH_SHORT" ]; then
  quietly "$jdk/bin/jlink" --add-modules java.se --strip-debug --no-header-files --no-man-pages \
    --output "$work/runtime"
  quietly "$build/bin/quorvane-pack" archive create "$work/runtime" "$work/runtime.p2.l2"
fi
python3 bench/decompress/measure.py "$rounds" "$build/bin/lzma64" "$work"/*.p2.l2
