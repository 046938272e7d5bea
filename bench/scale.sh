#!/usr/bin/env bash
# How the work grows: installations of 100 MB to 4 GB, archives of up to 100,000 files, class paths of
# up to 2,000 entries, 500 version folders, a year's log files; one table. TMPDIR needs twenty gigabytes.
# Usage: [KINDS="installs archives classpaths versions logs"] [INSTALLS="MB ..."] scripts/bench scale [ROUNDS]
#        (20 starts of each kind, a quarter as many archives, and three installations; 100 1000 4000 MB)
set -euo pipefail
cd "$(dirname "$0")/.."

build=$QUORVANE_BENCH_BUILD
rounds=${1:-${QUORVANE_BENCH_SHORT:-20}}
if [ -n "$QUORVANE_BENCH_SHORT" ]; then
  export INSTALLS="10 20" ARCHIVES="100 1000" CLASS_PATHS="2 20" VERSIONS="1 5" LOGS="10 100"
fi
jdk=$(dirname "$(dirname "$(readlink -f "$(command -v javac)")")")
work=$(mktemp -d)
BENCH_TMP=$(mktemp -d /tmp/bench-XXXXXX) # short: the toolkit keeps sockets there
export BENCH_TMP
trap clean_up EXIT

clean_up() {
  local file
  for file in $(grep -slz "^TMPDIR=$BENCH_TMP\$" /proc/[0-9]*/environ); do
    kill "$(basename "$(dirname "$file")")" 2> /dev/null || true
  done
  rm -rf "$BENCH_TMP" "$work"
}

quietly() { "$@" > "$work/quiet" 2>&1 || { cat "$work/quiet" >&2; echo "bench: this failed: $*" >&2; exit 1; }; }

quietly cmake --build "$build" --target \
  launcher extractor lzma64 exec_stamp quorvane-pack archive_extract archive_extract_quiet
mkdir "$work/updater" "$work/app"
quietly "$jdk/bin/javac" -d "$work/classes" bench/startup/Startup.java
quietly "$jdk/bin/jar" --create --file "$work/updater/updater.jar" -C "$work/classes" .
cp "$work/updater/updater.jar" "$work/app"
quietly "$jdk/bin/jlink" --add-modules java.base \
  --strip-debug --no-header-files --no-man-pages --output "$work/runtime"
QUORVANE_OWN_DISPLAY=1 scripts/with-display python3 bench/scale/measure.py "$rounds" "$work" "$build/bin"
