#ifndef QUORVANE_TESTS_SUPPORT_MACH_FILE_H
#define QUORVANE_TESTS_SUPPORT_MACH_FILE_H

#include <cstdint>
#include <string>

#include "tests/support/object_headers.h"

// Mach-O files that no Mac would run, with all that signing looks at.

namespace test {

// Four bytes, the lowest or the highest first.
std::string little32(uint32_t value);
std::string big32(uint32_t value);

// A 64-bit file of that kind for macOS 11 and one processor, without a signature: three pages of
// code, made from `content`, and room behind the load commands.
std::string wholeMachFile(uint32_t processor, uint32_t kind, const std::string& content);

// What a signature made by signedMachFile() says.
struct MachSignature {
  std::string identifier = "org.example.code";
  std::string team{};
  std::string entitlements{};
  std::string certificates{};  // stands in for a certificate's signature
  std::string infoDigest{};    // 32 bytes each; empty for none
  std::string sealDigest{};
  uint32_t flags = 0x10000;  // hardened runtime
};

// A file as wholeMachFile() makes it, signed.
std::string signedMachFile(uint32_t processor, uint32_t kind, const std::string& content,
                           const MachSignature& signature);

}  // namespace test

#endif
