#ifndef QUORVANE_TOOLS_SYSTEM_SHA256_DIGEST_H
#define QUORVANE_TOOLS_SYSTEM_SHA256_DIGEST_H

#include <string>

#include "platform/sha256.h"

namespace tools {

// A SHA-256 digest of bytes that come in pieces.
class Sha256 {
 public:
  Sha256() { startSystemSha256(state_); }
  void add(const char* bytes, size_t size);

  // Returns the 32 bytes of the digest. Nothing may be added after that.
  std::string finish();

 private:
  alignas(8) char state_[SYSTEM_SHA256_STATE_SIZE];
};

// Returns the 32 bytes of the SHA-256 digest of `size` bytes.
std::string sha256Of(const char* bytes, size_t size);

}  // namespace tools

#endif
