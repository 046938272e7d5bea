// A Mach-O file with a signature: every read stays inside it, and what is called whole is covered
// by hashes up to the last byte before the signature.

#include <memory>
#include <string>

#include "tests/fuzz/fuzz_target.h"
#include "tools/apple/code_signature.h"

static const size_t kLongest = 64 * 1024;

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size > kLongest) {
    return 0;
  }
  std::string bytes(data, data + size);
  bytes.shrink_to_fit();
  const auto file = tools::readMachFile(bytes);
  fuzz::require(!file || tools::beginsMachFile(bytes.substr(0, tools::MACH_HEAD_SIZE)),
                "the first bytes tell such a file");
  if (!file) {
    return 0;
  }
  fuzz::require(!file->parts.empty(), "there is at least one part");
  const bool isFat = static_cast<uint8_t>(bytes[0]) == 0xCA;
  if (isFat) {
    return 0;
  }
  const tools::CodeSignature& part = file->parts[0];
  fuzz::require(part.isSigned || part.hashLists.empty(), "hashes belong to a signature");
  if (!part.isSigned || !part.faults.empty()) {
    return 0;
  }
  fuzz::require(!part.hashLists.empty(), "what is called whole was compared");
  // The first page holds the load commands, which every signature covers.
  bytes[12] = static_cast<char>(bytes[12] ^ 64);
  const auto changed = tools::readMachFile(bytes);
  fuzz::require(changed && !changed->parts[0].faults.empty(), "a change is noticed");
  return 0;
}
