#include <cstring>

#include "tests/macos/run/image/image.h"
#include "tests/macos/run/stop.h"

namespace macrun {

constexpr uint64_t kPage = 4096;
constexpr uint64_t kLargestAddress = uint64_t{1} << 46;

static void checkSegment(const Image& image, const SegmentCommand& segment,
                         const ExecutableFile& file) {
  const char* path = file.path.c_str();
  part(file.bytes, segment.fileOffset, segment.fileSize);
  if (segment.address > kLargestAddress || segment.memorySize > kLargestAddress) {
    refuse("%s: segment %.16s lies outside the address space", path, segment.name);
  }
  if (segment.fileSize > segment.memorySize) {
    refuse("%s: segment %.16s is larger in the file than in memory", path, segment.name);
  }
  if (segment.address % kPage != 0 || (file.offset + segment.fileOffset) % kPage != 0) {
    refuse("%s: segment %.16s does not start at a page", path, segment.name);
  }
  if (!image.segments.empty()) {
    const SegmentCommand& before = image.segments.back();
    const uint64_t end = (before.address + before.memorySize + kPage - 1) / kPage * kPage;
    if (segment.address < end) {
      refuse("%s: segment %.16s starts before the end of %.16s", path, segment.name, before.name);
    }
  }
}

static void checkSection(const Section& section, const SegmentCommand& segment, const char* path) {
  const uint64_t end = segment.address + segment.memorySize;
  if (section.address < segment.address || section.address > end ||
      section.size > end - section.address) {
    refuse("%s: section %.16s lies outside its segment", path, section.name);
  }
}

static void readSegment(Image& image, Bytes command, const ExecutableFile& file) {
  const auto segment = take<SegmentCommand>(command);
  checkSegment(image, segment, file);
  for (uint32_t i = 0; i < segment.sectionCount; ++i) {
    image.sections.push_back(take<Section>(command));
    checkSection(image.sections.back(), segment, file.path.c_str());
  }
  image.segments.push_back(segment);
}

static void readFixups(Image& image, Bytes command, const ExecutableFile& file) {
  image.fixups = take<DyldInfoCommand>(command);
  const DyldInfoCommand& fixups = image.fixups;
  for (const Range& range : {fixups.rebases, fixups.binds, fixups.weakBinds, fixups.lazyBinds}) {
    part(file.bytes, range.offset, range.size);
  }
}

static void readLibrary(Image& image, const Bytes& command) {
  Bytes name = after(command, read<LibraryCommand>(command, 0).nameOffset);
  image.libraries.emplace_back(takeText(name));
}

static void readCommand(Image& image, uint32_t kind, const Bytes& command,
                        const ExecutableFile& file) {
  switch (kind) {
    case kSegment64:
      return readSegment(image, command, file);
    case kDyldInfo:
    case kDyldInfoOnly:
      return readFixups(image, command, file);
    case kLoadLibrary:
    case kLoadWeakLibrary:
    case kReexportLibrary:
      return readLibrary(image, command);
    case kMain:
      image.entryOffset = read<MainCommand>(command, 0).entryOffset;
      return;
    case kLibraryFolder:
    case kExports:
      return;
    case kChainedFixups:
      refuse("%s: has chained fixups, which are for macOS 12 and later", file.path.c_str());
    case kUnixThread:
      refuse("%s: starts without the dynamic linker", file.path.c_str());
    case kEncryption:
      if (read<EncryptionCommand>(command, 0).system != 0) {
        refuse("%s: is encrypted", file.path.c_str());
      }
      return;
    default:
      if ((kind & kNeededByLinker) != 0) {
        refuse("%s: needs load command %#x", file.path.c_str(), kind);
      }
  }
}

static const SegmentCommand* textSegment(const Image& image) {
  for (const SegmentCommand& segment : image.segments) {
    if (segment.fileOffset == 0 && segment.fileSize > 0) {
      return &segment;
    }
  }
  return nullptr;
}

static void checkEntry(const Image& image, const char* path) {
  const SegmentCommand* text = textSegment(image);
  if (text == nullptr) {
    refuse("%s: no segment holds its header", path);
  }
  if (image.entryOffset == 0 || image.entryOffset >= text->fileSize ||
      (text->protection & kExecutable) == 0) {
    refuse("%s: its entry point lies outside its code", path);
  }
}

Image readLoadCommands(const ExecutableFile& file) {
  const auto header = read<FileHeader>(file.bytes, 0);
  Bytes commands = part(file.bytes, sizeof header, header.commandSize);
  Image image{};
  for (uint32_t i = 0; i < header.commandCount; ++i) {
    const auto command = read<LoadCommand>(commands, 0);
    if (command.size < sizeof command || command.size % 8 != 0) {
      refuse("%s: load command %u has a size of %u", file.path.c_str(), i, command.size);
    }
    readCommand(image, command.kind, part(commands, 0, command.size), file);
    takeBytes(commands, command.size);
  }
  checkEntry(image, file.path.c_str());
  return image;
}

}  // namespace macrun
