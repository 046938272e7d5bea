#include "tools/keys/public_key.h"

#include "support/encoding/hex.h"
#include "tools/system/quiet_output.h"

namespace tools {

PublicKey publicKeyFromHex(const std::string& hex) {
  std::string der(hex.size() / 2 + 2, '\0');
  auto* bytes = reinterpret_cast<unsigned char*>(der.data());
  const int length = hexToBytes(bytes, static_cast<int>(der.size()), hex.c_str());
  const QuietOutput quiet;
  return PublicKey(loadDEREncodedPublicKey(bytes, length));
}

}  // namespace tools
