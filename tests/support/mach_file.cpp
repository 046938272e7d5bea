#include "tests/support/mach_file.h"

#include <vector>

#include "tools/system/sha256_digest.h"

namespace test {

static const size_t kPage = 4096;
static const size_t kCode = 3 * kPage;

std::string little32(uint32_t value) {
  std::string bytes;
  for (unsigned i = 0; i < 4; ++i) {
    bytes += static_cast<char>(value >> (8 * i) & 0xFF);
  }
  return bytes;
}

std::string big32(uint32_t value) {
  const std::string bytes = little32(value);
  return {bytes.rbegin(), bytes.rend()};
}

static std::string long64(uint64_t value) {
  return little32(static_cast<uint32_t>(value)) + little32(static_cast<uint32_t>(value >> 32));
}

static std::string name16(std::string name) {
  name.resize(16);
  return name;
}

static std::string segment(const std::string& name, uint64_t offset, uint64_t size,
                           uint32_t protection, const std::string& section) {
  constexpr uint64_t kBase = 0x100000000;
  const uint64_t room = (size + 0x3FFF) / 0x4000 * 0x4000;
  return little32(0x19) + little32(static_cast<uint32_t>(72 + section.size())) + name16(name) +
         long64(kBase + offset) + long64(room) + long64(offset) + long64(size) +
         little32(protection) + little32(protection) + little32(section.empty() ? 0 : 1) +
         little32(0) + section;
}

// The load commands and the code; `signatureSize` bytes of signature are to follow, if any.
static std::string unsignedFile(uint32_t processor, uint32_t kind, const std::string& content,
                                size_t signatureSize) {
  const std::string text = name16("__text") + name16("__TEXT") + long64(0x100000000 + kPage) +
                           long64(kPage) + little32(kPage) + little32(12) + std::string(8, '\0') +
                           little32(0x80000400) + std::string(12, '\0');
  std::vector<std::string> commands = {
      segment("__TEXT", 0, 2 * kPage, 5, text),
      segment("__LINKEDIT", 2 * kPage, kCode - 2 * kPage + signatureSize, 1, ""),
      // For macOS 11.
      little32(0x32) + little32(24) + little32(1) + little32(11 << 16) + little32(11 << 16) +
          little32(0)};
  if (kind == MACH_PROGRAM) {
    commands.push_back(little32(0x80000028) + little32(24) + long64(kPage) + long64(0));
  } else {
    std::string name = "@rpath/libmade.dylib";
    name.resize(24);
    commands.push_back(little32(0xD) + little32(48) + little32(24) + little32(0) +
                       little32(1 << 16) + little32(1 << 16) + name);
  }
  if (signatureSize > 0) {
    commands.push_back(little32(0x1D) + little32(16) + little32(kCode) +
                       little32(static_cast<uint32_t>(signatureSize)));
  }
  std::string all;
  for (const std::string& command : commands) {
    all += command;
  }
  std::string file = little32(0xFEEDFACF) + little32(processor) + little32(0) + little32(kind) +
                     little32(static_cast<uint32_t>(commands.size())) +
                     little32(static_cast<uint32_t>(all.size())) + little32(0x85) + little32(0) +
                     all;
  file.resize(kPage);
  file += content;
  file.resize(kCode, '#');
  return file;
}

std::string wholeMachFile(uint32_t processor, uint32_t kind, const std::string& content) {
  return unsignedFile(processor, kind, content, 0);
}

static std::string blob(uint32_t magic, const std::string& content) {
  return big32(magic) + big32(static_cast<uint32_t>(8 + content.size())) + content;
}

static std::string digestOf(const std::string& bytes) {
  return bytes.empty() ? std::string(32, '\0') : tools::sha256Of(bytes.data(), bytes.size());
}

static std::string directoryBlob(const std::string& code, const MachSignature& signature,
                                 const std::string& entitlements) {
  const auto orZero = [](const std::string& digest) {
    return digest.empty() ? std::string(32, '\0') : digest;
  };
  std::string names = signature.identifier + '\0';
  const size_t head = 64;
  const size_t team = signature.team.empty() ? 0 : head + names.size();
  names += signature.team.empty() ? "" : signature.team + '\0';
  // From the last of the special hashes, that of the entitlements, to the first.
  std::string hashes = digestOf(entitlements) + std::string(32, '\0') +
                       orZero(signature.sealDigest) + std::string(32, '\0') +
                       orZero(signature.infoDigest);
  const size_t firstHash = head + names.size() + hashes.size();
  for (size_t at = 0; at < code.size(); at += kPage) {
    hashes += digestOf(code.substr(at, kPage));
  }
  const auto number = [](size_t value) { return big32(static_cast<uint32_t>(value)); };
  return blob(0xFADE0C02, big32(0x20400) + big32(signature.flags) + number(firstHash) +
                              number(head) + number(5) + number(code.size() / kPage) +
                              number(code.size()) + std::string("\x20\x02\x00\x0C", 4) + big32(0) +
                              big32(0) + number(team) + std::string(12, '\0') + names + hashes);
}

std::string signedMachFile(uint32_t processor, uint32_t kind, const std::string& content,
                           const MachSignature& signature) {
  const std::string entitlements =
      signature.entitlements.empty() ? "" : blob(0xFADE7171, signature.entitlements);
  // The directory's size does not depend on the code's content.
  std::string superBlob;
  for (size_t size = 1, pass = 0; pass < 2; ++pass, size = superBlob.size()) {
    const std::string code = unsignedFile(processor, kind, content, size);
    std::vector<std::pair<uint32_t, std::string>> blobs = {
        {0, directoryBlob(code, signature, entitlements)}};
    if (!entitlements.empty()) {
      blobs.emplace_back(5, entitlements);
    }
    blobs.emplace_back(0x10000, blob(0xFADE0B01, signature.certificates));
    std::string index;
    std::string all;
    for (const auto& [slot, bytes] : blobs) {
      index += big32(slot) + big32(static_cast<uint32_t>(12 + 8 * blobs.size() + all.size()));
      all += bytes;
    }
    superBlob = blob(0xFADE0CC0, big32(static_cast<uint32_t>(blobs.size())) + index + all);
  }
  return unsignedFile(processor, kind, content, superBlob.size()) + superBlob;
}

}  // namespace test
