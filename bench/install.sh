#!/usr/bin/env bash
# The whole job: an offline installation of a runtime and an application beside the floor of the same
# work done with xz, tar, one hash pass and Java alone; its growth with the payload; its peak memory;
# and the start of what is installed already. TMPDIR needs eight gigabytes.
# Usage: [BESIDE=BIN] scripts/bench install [ROUNDS [FACTOR ...]]
#        (10; 1, 4 and 16 times 60 MB and 10 MB; BIN: another build's executables, measured as well)
set -euo pipefail
cd "$(dirname "$0")/.."

build=$QUORVANE_BENCH_BUILD
rounds=${1:-${QUORVANE_BENCH_SHORT:-10}}
shift || true
modules=java.base,java.logging,java.naming,java.xml
factors=(1 4 16)
if [ -n "$QUORVANE_BENCH_SHORT" ]; then
  modules=java.base
  factors=(0.1)
fi
jdk=$(dirname "$(dirname "$(readlink -f "$(command -v javac)")")")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

quietly() { "$@" > "$work/quiet" 2>&1 || { cat "$work/quiet" >&2; echo "bench: this failed: $*" >&2; exit 1; }; }

quietly cmake --build "$build" --target launcher extractor lzma64 exec_stamp quorvane-pack
mkdir "$work/updater"
quietly "$jdk/bin/javac" -d "$work/classes" bench/startup/Startup.java
quietly "$jdk/bin/jar" --create --file "$work/updater/updater.jar" -C "$work/classes" .
quietly "$jdk/bin/jlink" --add-modules "$modules" \
  --strip-debug --no-header-files --no-man-pages --output "$work/runtime"
python3 bench/install/measure.py "$rounds" "$work" "$build/bin" "${@:-${factors[@]}}"
