#ifndef QUORVANE_TOOLS_APPLE_SHA256_DIGEST_H
#define QUORVANE_TOOLS_APPLE_SHA256_DIGEST_H

#include <string>

namespace tools {

// Returns the 32 bytes of the SHA-256 digest of `size` bytes.
std::string sha256Of(const char* bytes, size_t size);

}  // namespace tools

#endif
