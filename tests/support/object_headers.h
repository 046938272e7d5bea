#ifndef QUORVANE_TESTS_SUPPORT_OBJECT_HEADERS_H
#define QUORVANE_TESTS_SUPPORT_OBJECT_HEADERS_H

#include <cstdint>
#include <string>
#include <vector>

// The beginnings of programs and libraries, as far as they say what they are for. Nothing can
// execute them.

namespace test {

// Machines of ELF files.
constexpr uint16_t ELF_386 = 3;
constexpr uint16_t ELF_X86_64 = 62;
constexpr uint16_t ELF_ARM64 = 183;

// Types of ELF files.
constexpr uint16_t ELF_OBJECT = 1;
constexpr uint16_t ELF_PROGRAM = 2;
constexpr uint16_t ELF_SHARED = 3;

// Processors of Mach-O files.
constexpr uint32_t MACH_386 = 7;
constexpr uint32_t MACH_X86_64 = 0x01000007;
constexpr uint32_t MACH_ARM64 = 0x0100000c;

// Types of Mach-O files.
constexpr uint32_t MACH_OBJECT = 1;
constexpr uint32_t MACH_PROGRAM = 2;
constexpr uint32_t MACH_LIBRARY = 6;
constexpr uint32_t MACH_BUNDLE = 8;

// `number` in `size` bytes, the lowest first or last.
std::string littleEndian(uint64_t number, size_t size);
std::string bigEndian(uint64_t number, size_t size);

// The header of a 64-bit ELF file for Linux.
std::string elfFile(uint16_t machine, uint16_t type = ELF_SHARED);

// The header of a 64-bit Mach-O file with these load commands.
std::string machFile(uint32_t processor, uint32_t type, const std::vector<std::string>& commands,
                     uint32_t subtype = 0);

// The load commands that name a platform (1 is macOS) and its oldest version, 0x000a0d00 for 10.13.
std::string buildVersion(uint32_t platform, uint32_t version);
std::string versionMin(uint32_t version);

// The header of a Mach-O file for macOS 11.0.
std::string macFile(uint32_t processor, uint32_t type = MACH_LIBRARY);

// A fat file of parts, each with its processor.
struct FatPart {
  uint32_t processor;
  std::string bytes;
};
std::string fatFile(const std::vector<FatPart>& parts, bool isWide = false);

}  // namespace test

#endif
