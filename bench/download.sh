#!/usr/bin/env bash
# Downloads 300 MB from a server on this machine, with the downloader and with curl in turn, and
# compares wall time and peak memory. Ends with status 1 when a limit is missed.
# Usage: scripts/bench download [ROUNDS]   (11)
set -euo pipefail
build=$QUORVANE_BENCH_BUILD
cmake --build "$build" --target download_bench >/dev/null
exec python3 bench/download.py "$build/bin/download_bench" "${1:-${QUORVANE_BENCH_SHORT:-11}}"
