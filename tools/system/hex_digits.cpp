#include "tools/system/hex_digits.h"

#include "support/encoding/hex.h"

namespace tools {

std::string hexOf(const std::string& bytes) {
  std::string hex(2 * bytes.size() + 1, '\0');
  bytesToHex(hex.data(), reinterpret_cast<const unsigned char*>(bytes.data()),
             static_cast<int>(bytes.size()));
  hex.pop_back();
  return hex;
}

}  // namespace tools
