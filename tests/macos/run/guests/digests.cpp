// SHA-256 of the system's library, in pieces.
#include <CommonCrypto/CommonDigest.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

// The first argument is the message, the second how many bytes a piece has.
int main(int, char** argv) {
  const char* message = argv[1];
  const size_t piece = strtoul(argv[2], nullptr, 10);
  CC_SHA256_CTX context;
  int results = CC_SHA256_Init(&context);
  for (size_t left = strlen(message); left > 0;) {
    const size_t size = left < piece ? left : piece;
    results += CC_SHA256_Update(&context, message, static_cast<CC_LONG>(size));
    message += size;
    left -= size;
  }
  unsigned char digest[CC_SHA256_DIGEST_LENGTH];
  results += CC_SHA256_Final(digest, &context);
  for (const unsigned char byte : digest) {
    printf("%02x", byte);
  }
  printf("\nresults %d size %zu\n", results, sizeof context);
}
