// The two hashes and their mix, beside OpenSSL's SHA3-256 (the same permutation and the same rate)
// and beside LibTomCrypt's SHA-256 with Keccak run after it.

#include <benchmark/benchmark.h>
#include <openssl/evp.h>

#include <cstdlib>
#include <cstring>
#include <vector>

#include "crypto/keccak.h"
#include "crypto/keccak_permutation.h"
#include "crypto/mixed_hash.h"
#include "crypto/tomcrypt.h"

namespace {

std::vector<unsigned char> messageFor(const benchmark::State& state) {
  std::vector<unsigned char> message(static_cast<size_t>(state.range(0)));
  for (size_t i = 0; i < message.size(); ++i) {
    message[i] = static_cast<unsigned char>(i * 131 >> 3);
  }
  return message;
}

void countBytes(benchmark::State& state) {
  state.SetBytesProcessed(state.iterations() * state.range(0));
}

void keccak(const std::vector<unsigned char>& message, unsigned char* digest) {
  KeccakState state;
  Init(&state);
  Update(&state, message.data(), message.size() * 8);
  Final(&state, digest, KECCAK_256_BYTES);
}

void sha256(const std::vector<unsigned char>& message, unsigned char* digest) {
  Hash_state state;
  sha256_init(&state);
  sha256_process(&state, message.data(), message.size());
  sha256_done(&state, digest);
}

void Keccak(benchmark::State& state) {
  const std::vector<unsigned char> message = messageFor(state);
  unsigned char digest[KECCAK_256_BYTES];
  for (auto _ : state) {
    keccak(message, digest);
    benchmark::DoNotOptimize(digest);
  }
  countBytes(state);
}

// The permutation that a processor without later instructions runs, on whole blocks.
void KeccakPlain(benchmark::State& state) {
  const std::vector<unsigned char> message = messageFor(state);
  KeccakState keccak;
  Init(&keccak);
  for (auto _ : state) {
    for (size_t at = 0; at + KECCAK_RATE_BYTES <= message.size(); at += KECCAK_RATE_BYTES) {
      for (size_t i = 0; i < KECCAK_RATE_LANES; ++i) {
        uint64_t lane;
        memcpy(&lane, &message[at + 8 * i], sizeof lane);
        keccak.lanes[i] ^= lane;
      }
      permuteKeccakPlain(keccak.lanes);
    }
    benchmark::DoNotOptimize(keccak);
  }
  countBytes(state);
}

void OpensslSha3(benchmark::State& state) {
  const std::vector<unsigned char> message = messageFor(state);
  EVP_MD* const algorithm = EVP_MD_fetch(nullptr, "SHA3-256", nullptr);
  EVP_MD_CTX* const context = EVP_MD_CTX_new();
  unsigned char digest[EVP_MAX_MD_SIZE];
  for (auto _ : state) {
    EVP_DigestInit_ex(context, algorithm, nullptr);
    EVP_DigestUpdate(context, message.data(), message.size());
    if (EVP_DigestFinal_ex(context, digest, nullptr) != 1) {
      state.SkipWithError("OpenSSL has no SHA3-256");
      break;
    }
    benchmark::DoNotOptimize(digest);
  }
  EVP_MD_CTX_free(context);
  EVP_MD_free(algorithm);
  countBytes(state);
}

void Sha256(benchmark::State& state) {
  const std::vector<unsigned char> message = messageFor(state);
  unsigned char digest[32];
  for (auto _ : state) {
    sha256(message, digest);
    benchmark::DoNotOptimize(digest);
  }
  countBytes(state);
}

void Sha256ThenKeccak(benchmark::State& state) {
  const std::vector<unsigned char> message = messageFor(state);
  unsigned char digest[MIXED_DIGEST_SIZE];
  for (auto _ : state) {
    sha256(message, digest);
    keccak(message, digest + 32);
    benchmark::DoNotOptimize(digest);
  }
  countBytes(state);
}

void MixedDigest(benchmark::State& state) {
  const std::vector<unsigned char> message = messageFor(state);
  Hash_state hash;
  for (auto _ : state) {
    if (!initHash(&hash) || !updateHash(&hash, message.data(), static_cast<int>(message.size()))) {
      return state.SkipWithError("the hash cannot be made");
    }
    free(doFinal(&hash));
  }
  countBytes(state);
}

void sizes(benchmark::internal::Benchmark* benchmark) {
  for (const int64_t size : {16 << 10, 64 << 10, 1 << 20}) {
    benchmark->Arg(size);
  }
}

BENCHMARK(Keccak)->Apply(sizes);
BENCHMARK(KeccakPlain)->Apply(sizes);
BENCHMARK(OpensslSha3)->Apply(sizes);
BENCHMARK(Sha256)->Apply(sizes);
BENCHMARK(Sha256ThenKeccak)->Apply(sizes);
BENCHMARK(MixedDigest)->Apply(sizes);

}  // namespace
