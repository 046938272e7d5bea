#include "tests/support/object_headers.h"

namespace test {

std::string littleEndian(uint64_t number, size_t size) {
  std::string bytes;
  for (size_t i = 0; i < size; ++i) {
    bytes += static_cast<char>(number >> (8 * i));
  }
  return bytes;
}

std::string bigEndian(uint64_t number, size_t size) {
  const std::string bytes = littleEndian(number, size);
  return {bytes.rbegin(), bytes.rend()};
}

std::string elfFile(uint16_t machine, uint16_t type) {
  const std::string identity = std::string("\x7f") + "ELF\x02\x01\x01" + std::string(9, '\0');
  const std::string rest(44, '\0');
  return identity + littleEndian(type, 2) + littleEndian(machine, 2) + rest;
}

std::string machFile(uint32_t processor, uint32_t type, const std::vector<std::string>& commands,
                     uint32_t subtype) {
  std::string all;
  for (const std::string& command : commands) {
    all += command;
  }
  std::string bytes;
  for (const uint64_t word :
       {uint64_t{0xfeedfacf}, uint64_t{processor}, uint64_t{subtype}, uint64_t{type},
        uint64_t{commands.size()}, uint64_t{all.size()}, uint64_t{0}, uint64_t{0}}) {
    bytes += littleEndian(word, 4);
  }
  return bytes + all;
}

static std::string command(const std::vector<uint32_t>& words) {
  std::string bytes;
  for (const uint32_t word : words) {
    bytes += littleEndian(word, 4);
  }
  return bytes;
}

std::string buildVersion(uint32_t platform, uint32_t version) {
  return command({0x32, 24, platform, version, version, 0});
}

std::string versionMin(uint32_t version) {
  return command({0x24, 16, version, version});
}

std::string macFile(uint32_t processor, uint32_t type) {
  return machFile(processor, type, {buildVersion(1, 0x000b0000)});
}

std::string fatFile(const std::vector<FatPart>& parts, bool isWide) {
  const size_t entry = isWide ? 32 : 20;
  const size_t width = isWide ? 8 : 4;
  std::string list = bigEndian(isWide ? 0xcafebabf : 0xcafebabe, 4) + bigEndian(parts.size(), 4);
  std::string content;
  for (const FatPart& part : parts) {
    const size_t offset = 8 + parts.size() * entry + content.size();
    list += bigEndian(part.processor, 4) + bigEndian(0, 4) + bigEndian(offset, width) +
            bigEndian(part.bytes.size(), width) + bigEndian(0, isWide ? 8 : 4);
    content += part.bytes;
  }
  return list + content;
}

}  // namespace test
