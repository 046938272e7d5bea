#include "tools/apple/sha256_digest.h"

#include "platform/sha256.h"

namespace tools {

std::string sha256Of(const char* bytes, size_t size) {
  alignas(8) char state[SYSTEM_SHA256_STATE_SIZE];
  unsigned char digest[SYSTEM_SHA256_DIGEST_SIZE];
  startSystemSha256(state);
  updateSystemSha256(state, reinterpret_cast<const unsigned char*>(bytes), size);
  finishSystemSha256(state, digest);
  return std::string(reinterpret_cast<const char*>(digest), sizeof digest);
}

}  // namespace tools
