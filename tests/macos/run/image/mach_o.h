#ifndef QUORVANE_TESTS_MACOS_RUN_IMAGE_MACH_O_H
#define QUORVANE_TESTS_MACOS_RUN_IMAGE_MACH_O_H

#include <cstdint>

// The records of a Mach-O file, as <mach-o/loader.h> and <mach-o/fat.h> describe them, with the
// fields under shorter names. Only what the loader reads.

namespace macrun {

constexpr uint32_t kMagic64 = 0xFEEDFACF;          // MH_MAGIC_64
constexpr uint32_t kFatMagic = 0xBEBAFECA;         // FAT_MAGIC as a little-endian reader sees it
constexpr uint32_t kFatMagic64 = 0xBFBAFECA;       // FAT_MAGIC_64
constexpr uint32_t kProcessorX86_64 = 0x01000007;  // CPU_TYPE_X86_64
constexpr uint32_t kExecute = 2;                   // MH_EXECUTE

struct FileHeader {
  uint32_t magic, processor, processorKind, fileType, commandCount, commandSize, flags, reserved;
};
static_assert(sizeof(FileHeader) == 32);

// Both of a fat file are in big-endian order.
struct FatHeader {
  uint32_t magic, count;
};
struct FatSlice {
  uint32_t processor, processorKind, offset, size, alignment;
};
static_assert(sizeof(FatHeader) == 8 && sizeof(FatSlice) == 20);

enum CommandKind : uint32_t {
  kLoadLibrary = 0xC,             // LC_LOAD_DYLIB
  kSegment64 = 0x19,              // LC_SEGMENT_64
  kUnixThread = 0x5,              // LC_UNIXTHREAD
  kDyldInfo = 0x22,               // LC_DYLD_INFO
  kEncryption = 0x2C,             // LC_ENCRYPTION_INFO_64
  kNeededByLinker = 0x80000000,   // LC_REQ_DYLD, a bit
  kLoadWeakLibrary = 0x80000018,  // LC_LOAD_WEAK_DYLIB
  kLibraryFolder = 0x8000001C,    // LC_RPATH
  kReexportLibrary = 0x8000001F,  // LC_REEXPORT_DYLIB
  kDyldInfoOnly = 0x80000022,     // LC_DYLD_INFO_ONLY
  kMain = 0x80000028,             // LC_MAIN
  kExports = 0x80000033,          // LC_DYLD_EXPORTS_TRIE
  kChainedFixups = 0x80000034,    // LC_DYLD_CHAINED_FIXUPS
};

struct LoadCommand {
  uint32_t kind, size;
};

struct SegmentCommand {
  uint32_t kind, size;
  char name[16];
  uint64_t address, memorySize, fileOffset, fileSize;
  int32_t maximumProtection, protection;
  uint32_t sectionCount, flags;
};
static_assert(sizeof(SegmentCommand) == 72);

constexpr int kReadable = 1, kWritable = 2, kExecutable = 4;  // VM_PROT_…
constexpr uint32_t kReadOnlyLater = 0x10;                     // SG_READ_ONLY

struct Section {
  char name[16], segment[16];
  uint64_t address, size;
  uint32_t offset, alignment, relocations, relocationCount, flags, reserved[3];
};
static_assert(sizeof(Section) == 80);

constexpr uint32_t kSectionKind = 0xFF;         // SECTION_TYPE
constexpr uint32_t kZeroFill = 1;               // S_ZEROFILL
constexpr uint32_t kInitializers = 9;           // S_MOD_INIT_FUNC_POINTERS
constexpr uint32_t kInitializerOffsets = 0x16;  // S_INIT_FUNC_OFFSETS

struct Range {
  uint32_t offset, size;
};

struct DyldInfoCommand {
  uint32_t kind, size;
  Range rebases, binds, weakBinds, lazyBinds, exports;
};
static_assert(sizeof(DyldInfoCommand) == 48);

struct MainCommand {
  uint32_t kind, size;
  uint64_t entryOffset, stackSize;
};
static_assert(sizeof(MainCommand) == 24);

struct LibraryCommand {
  uint32_t kind, size, nameOffset, time, version, oldestVersion;
};
static_assert(sizeof(LibraryCommand) == 24);

struct EncryptionCommand {
  uint32_t kind, size, offset, length, system, padding;
};

}  // namespace macrun

#endif
