#include "tools/objects/object_reader.h"

#include <algorithm>

#include "tools/system/input_error.h"
#include "tools/system/whole_file.h"

namespace tools {

namespace {

// Numbers in bytes that were read; a number beyond their end is damage.
class Numbers {
 public:
  Numbers(std::string bytes, bool isBigEndian)
      : bytes_(std::move(bytes)), isBigEndian_(isBigEndian) {}

  uint64_t at(size_t offset, size_t size) const {
    if (offset > bytes_.size() || size > bytes_.size() - offset) {
      throw InputError("it ends within its header");
    }
    uint64_t number = 0;
    for (size_t i = 0; i < size; ++i) {
      const size_t place = offset + (isBigEndian_ ? i : size - 1 - i);
      number = (number << 8) | static_cast<unsigned char>(bytes_[place]);
    }
    return number;
  }
  uint16_t half(size_t offset) const { return static_cast<uint16_t>(at(offset, 2)); }
  uint32_t word(size_t offset) const { return static_cast<uint32_t>(at(offset, 4)); }
  size_t size() const { return bytes_.size(); }

 private:
  std::string bytes_;
  bool isBigEndian_;
};

// A processor by the number that a format gives it.
struct KnownProcessor {
  uint32_t number;
  Processor processor;
};

// One Mach-O file, or the part of a fat one.
struct MachHeader {
  uint32_t processor = 0;
  uint32_t subtype = 0;
  uint32_t fileType = 0;
  uint32_t platform = 0;
  SystemVersion minimumSystem = 0;
};

}  // namespace

static const KnownProcessor kElfMachines[] = {{62, Processor::x86_64}, {183, Processor::arm64}};
static const uint32_t kMachX86 = 0x01000007;
static const uint32_t kMachArm = 0x0100000c;
static const KnownProcessor kMachProcessors[] = {{kMachX86, Processor::x86_64},
                                                 {kMachArm, Processor::arm64}};

template <size_t COUNT>
static std::optional<Target> knownTarget(System system, const KnownProcessor (&known)[COUNT],
                                         uint32_t number) {
  for (const KnownProcessor& one : known) {
    if (one.number == number) {
      return Target{system, one.processor};
    }
  }
  return std::nullopt;
}

std::string systemVersionText(SystemVersion version) {
  if (version == 0) {
    return "";
  }
  const uint32_t patch = version & 0xff;
  return std::to_string(version >> 16) + "." + std::to_string((version >> 8) & 0xff) +
         (patch == 0 ? "" : "." + std::to_string(patch));
}

static ObjectPart readElf(const ByteSource& source) {
  constexpr size_t kHeader = 20;
  constexpr unsigned char kWide = 2;
  constexpr unsigned char kBigEndian = 2;
  constexpr uint16_t kProgram = 2;
  constexpr uint16_t kShared = 3;  // a library, or a program at any address
  const std::string bytes = source(0, kHeader);
  const Numbers numbers(bytes, bytes.size() > 5 && bytes[5] == kBigEndian);
  const uint16_t type = numbers.half(16);
  const uint16_t machine = numbers.half(18);
  const auto system = static_cast<unsigned char>(bytes[7]);
  const bool isLinux = system == 0 || system == 3;
  ObjectPart part;
  if (bytes[4] == kWide && bytes[5] != kBigEndian && isLinux) {
    part.target = knownTarget(System::linux_, kElfMachines, machine);
  }
  part.text = part.target
                  ? targetText(*part.target)
                  : std::string(isLinux ? "linux" : "another system") + " on ELF machine " +
                        std::to_string(machine) + (bytes[4] == kWide ? "" : " with 32 bits");
  part.isProgram = type == kProgram || type == kShared;
  part.isLibrary = type == kShared;
  return part;
}

// The platform that a load command names, if it names one.
static void takeCommand(const Numbers& commands, size_t at, uint32_t size, MachHeader* header) {
  constexpr uint32_t kVersionMinMacos = 0x24;
  constexpr uint32_t kVersionMinOthers[] = {0x25, 0x2f, 0x30};  // of telephone, television, watch
  constexpr uint32_t kBuildVersion = 0x32;
  constexpr uint32_t kMacos = 1;
  constexpr uint32_t kTelephone = 2;
  const uint32_t command = commands.word(at);
  const bool isOther =
      std::count(std::begin(kVersionMinOthers), std::end(kVersionMinOthers), command) > 0;
  const bool hasVersion = command == kVersionMinMacos || isOther || command == kBuildVersion;
  if (hasVersion && size < 16) {
    throw InputError("a load command is too short");
  }
  if (command == kVersionMinMacos || isOther) {
    header->platform = isOther ? kTelephone : kMacos;
    header->minimumSystem = commands.word(at + 8);
  } else if (command == kBuildVersion) {
    header->platform = commands.word(at + 8);
    header->minimumSystem = commands.word(at + 12);
  }
}

static MachHeader readMachHeader(const ByteSource& source, bool isBigEndian, bool isWide) {
  constexpr size_t kMostCommandBytes = 1 << 20;
  constexpr uint32_t kShortestCommand = 8;
  const size_t headerSize = isWide ? 32 : 28;
  const Numbers numbers(source(0, headerSize), isBigEndian);
  MachHeader header;
  header.processor = numbers.word(4);
  header.subtype = numbers.word(8);
  header.fileType = numbers.word(12);
  const uint32_t count = numbers.word(16);
  const uint32_t size = numbers.word(20);
  numbers.at(headerSize - 4, 4);
  if (size > kMostCommandBytes) {
    throw InputError("its load commands are said to have " + std::to_string(size) + " bytes");
  }
  const Numbers commands(source(headerSize, size), isBigEndian);
  if (commands.size() < size) {
    throw InputError("it ends within its load commands");
  }
  size_t at = 0;
  for (uint32_t i = 0; i < count; ++i) {
    const uint32_t length = commands.word(at + 4);
    if (length < kShortestCommand || length > size - at) {
      throw InputError("load command " + std::to_string(i + 1) + " has a wrong size");
    }
    takeCommand(commands, at, length, &header);
    at += length;
  }
  return header;
}

static std::string machText(const MachHeader& header) {
  const std::optional<Target> like = knownTarget(System::macos, kMachProcessors, header.processor);
  const std::string processor = like ? targetText(*like).substr(std::string("macos-").size())
                                     : "Mach-O processor " + std::to_string(header.processor);
  if (header.platform > 1) {
    return "Apple's platform " + std::to_string(header.platform) + " on " + processor;
  }
  return "macos on " + processor + (like ? " with another subtype" : "");
}

static ObjectPart readMach(const ByteSource& source, bool isBigEndian, bool isWide) {
  constexpr uint32_t kProgram = 2;
  constexpr uint32_t kLibrary = 6;
  constexpr uint32_t kBundle = 8;
  constexpr uint32_t kSubtypeMask = 0x00ffffff;
  constexpr uint32_t kPointersSigned = 2;  // arm64e, which processes of applications do not load
  const MachHeader header = readMachHeader(source, isBigEndian, isWide);
  const bool isForeignArm =
      header.processor == kMachArm && (header.subtype & kSubtypeMask) == kPointersSigned;
  ObjectPart part;
  if (isWide && !isBigEndian && header.platform <= 1 && !isForeignArm) {
    part.target = knownTarget(System::macos, kMachProcessors, header.processor);
  }
  part.text = part.target ? targetText(*part.target) : machText(header);
  part.minimumSystem = part.target ? header.minimumSystem : 0;
  part.isProgram = header.fileType == kProgram;
  part.isLibrary = header.fileType == kLibrary || header.fileType == kBundle;
  return part;
}

static std::optional<ObjectPart> readMachFile(const ByteSource& source) {
  const std::string magic = source(0, 4);
  for (const bool isWide : {false, true}) {
    const char last = isWide ? '\xcf' : '\xce';
    if (magic == std::string("\xfe\xed\xfa") + last) {
      return readMach(source, true, isWide);
    }
    if (magic == last + std::string("\xfa\xed\xfe")) {
      return readMach(source, false, isWide);
    }
  }
  return std::nullopt;
}

static ByteSource partOf(const ByteSource& source, uint64_t offset, uint64_t length) {
  return [source, offset, length](uint64_t at, size_t size) {
    return at >= length ? std::string()
                        : source(offset + at, std::min<uint64_t>(size, length - at));
  };
}

// Takes the part of a fat file that the entry at `at` of its list names. A part may also be an
// archive of object files, which nothing executes or loads.
static void takeFatPart(const ByteSource& source, const Numbers& list, size_t at, bool isWide,
                        std::vector<ObjectPart>* parts) {
  const size_t width = isWide ? 8 : 4;
  const uint64_t offset = list.at(at + 8, width);
  const uint64_t length = list.at(at + 8 + width, width);
  if (offset > INT64_MAX || length > INT64_MAX - offset || length == 0 ||
      source(offset + length - 1, 1).empty()) {
    throw InputError("it ends within one of its parts");
  }
  const std::optional<ObjectPart> part = readMachFile(partOf(source, offset, length));
  if (!part) {
    return;
  }
  const std::optional<Target> listed = knownTarget(System::macos, kMachProcessors, list.word(at));
  if (part->target && part->target != listed) {
    throw InputError("its list names another processor than its part for " + part->text);
  }
  parts->push_back(*part);
}

static std::vector<ObjectPart> readFat(const ByteSource& source, bool isWide) {
  // Java classes begin with the same four bytes; the next four are their version, 45 at least.
  constexpr uint32_t kLeastClassVersion = 45;
  const std::string head = source(0, 8);
  const uint32_t count = Numbers(head, true).word(4);
  if (!isWide && count >= kLeastClassVersion) {
    return {};
  }
  if (count == 0 || count >= kLeastClassVersion) {
    throw InputError("it is said to have " + std::to_string(count) + " parts");
  }
  const size_t entrySize = isWide ? 32 : 20;
  const Numbers list(source(head.size(), count * entrySize), true);
  std::vector<ObjectPart> parts;
  for (uint32_t i = 0; i < count; ++i) {
    takeFatPart(source, list, i * entrySize, isWide, &parts);
  }
  return parts;
}

std::vector<ObjectPart> readObject(const ByteSource& source) {
  const std::string magic = source(0, 4);
  if (magic == "\xca\xfe\xba\xbe" || magic == "\xca\xfe\xba\xbf") {
    return readFat(source, magic[3] == '\xbf');
  }
  const std::optional<ObjectPart> part = magic == "\x7f"
                                                  "ELF"
                                             ? readElf(source)
                                             : readMachFile(source);
  return part ? std::vector<ObjectPart>{*part} : std::vector<ObjectPart>{};
}

std::vector<ObjectPart> readObjectIn(const std::string& path, uint64_t offset, uint64_t length,
                                     const std::string& name) {
  const Stream stream = openInput(path);
  const ByteSource source = [&](uint64_t at, size_t size) {
    std::string bytes(size, '\0');
    if (at > INT64_MAX || fseeko(stream.get(), static_cast<off_t>(at), SEEK_SET) != 0) {
      return std::string();
    }
    bytes.resize(fread(bytes.data(), 1, size, stream.get()));
    return bytes;
  };
  try {
    return readObject(partOf(source, offset, length));
  } catch (const InputError& error) {
    throw InputError(name + " is damaged: " + error.what());
  }
}

std::vector<ObjectPart> readObjectFile(const std::string& path) {
  return readObjectIn(path, 0, INT64_MAX, path);
}

}  // namespace tools
