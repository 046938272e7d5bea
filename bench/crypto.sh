#!/usr/bin/env bash
# The hashes of archive signatures against OpenSSL's SHA3-256 and against one hash after the other,
# all on one core in one run.
# Usage: scripts/bench crypto
set -euo pipefail

build=$QUORVANE_BENCH_BUILD
repetitions=${QUORVANE_BENCH_SHORT:-60}
cmake --build "$build" --target crypto_bench | { grep -E 'error|FAILED' || true; }
core=$(taskset -cp $$ | sed 's/.*: //; s/[-,].*//')
results=$(mktemp)
trap 'rm -f "$results"' EXIT
taskset -c "$core" "$build/bin/crypto_bench" --benchmark_repetitions="$repetitions" \
  --benchmark_min_time=0.01 --benchmark_enable_random_interleaving=true \
  --benchmark_out="$results" --benchmark_out_format=json >/dev/null
python3 bench/ratios.py "$results" Keccak/OpensslSha3 KeccakPlain/OpensslSha3 \
  MixedDigest/Sha256ThenKeccak
echo
echo "openssl speed on the same core:"
taskset -c "$core" openssl speed -evp sha3-256 -bytes 16384 -seconds 2 2>/dev/null | tail -n 1
