#include "tools/system/sha256_digest.h"

namespace tools {

void Sha256::add(const char* bytes, size_t size) {
  updateSystemSha256(state_, reinterpret_cast<const unsigned char*>(bytes), size);
}

std::string Sha256::finish() {
  unsigned char digest[SYSTEM_SHA256_DIGEST_SIZE];
  finishSystemSha256(state_, digest);
  return std::string(reinterpret_cast<const char*>(digest), sizeof digest);
}

std::string sha256Of(const char* bytes, size_t size) {
  Sha256 digest;
  digest.add(bytes, size);
  return digest.finish();
}

}  // namespace tools
