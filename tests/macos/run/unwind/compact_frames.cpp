#include <map>

#include "tests/macos/run/stop.h"
#include "tests/macos/run/unwind/compact_encoding.h"
#include "tests/macos/run/unwind/frame_table.h"

// Reads __unwind_info, which <mach-o/compact_unwind_encoding.h> describes.

namespace macrun {

struct CompactHeader {
  uint32_t version, commonOffset, commonCount, personalityOffset, personalityCount, indexOffset,
      indexCount;
};

// One for each page of functions, and one more that ends the last page.
struct IndexEntry {
  uint32_t function, pageOffset, dataOffset;
};

struct LanguageEntry {
  uint32_t function, data;
};

// Where a function starts, as an offset from the header, and how it is left.
struct CompactFunction {
  uint32_t start, encoding;
};

struct CompactInfo {
  Bytes section;
  CompactHeader header;
  std::vector<CompactFunction> functions;
  std::map<uint32_t, uint32_t> languageData;
};

constexpr uint32_t kRegularPage = 2, kCompressedPage = 3;  // UNWIND_SECOND_LEVEL_…
constexpr uint32_t kHasLanguageData = 0x40000000;          // UNWIND_HAS_LSDA

static uint32_t encodingOf(const CompactInfo& info, const Bytes& page, uint32_t index) {
  constexpr uint32_t kEncoding = sizeof(uint32_t);
  if (index < info.header.commonCount) {
    return read<uint32_t>(info.section, info.header.commonOffset + uint64_t{kEncoding} * index);
  }
  const auto own = read<uint16_t>(page, 8);
  return read<uint32_t>(page, own + uint64_t{kEncoding} * (index - info.header.commonCount));
}

static void readPage(CompactInfo& info, const IndexEntry& entry) {
  const Bytes page = after(info.section, entry.pageOffset);
  const auto kind = read<uint32_t>(page, 0);
  Bytes entries = after(page, read<uint16_t>(page, 4));
  const auto count = read<uint16_t>(page, 6);
  for (uint16_t i = 0; i < count; ++i) {
    if (kind == kRegularPage) {
      info.functions.push_back(take<CompactFunction>(entries));
    } else if (kind == kCompressedPage) {
      const auto both = take<uint32_t>(entries);
      info.functions.push_back(
          {entry.function + (both & 0xFFFFFF), encodingOf(info, page, both >> 24)});
    } else {
      refuse("__unwind_info: a page is of kind %u", kind);
    }
  }
}

static void readLanguageData(CompactInfo& info, const IndexEntry& entry, const IndexEntry& next) {
  for (uint64_t at = entry.dataOffset; at < next.dataOffset; at += sizeof(LanguageEntry)) {
    const auto data = read<LanguageEntry>(info.section, at);
    info.languageData[data.function] = data.data;
  }
}

static CompactInfo readInfo(const Bytes& section) {
  CompactInfo info{section, read<CompactHeader>(section, 0), {}, {}};
  for (uint32_t i = 0; i < info.header.indexCount; ++i) {
    const uint64_t at = info.header.indexOffset + uint64_t{sizeof(IndexEntry)} * i;
    const auto entry = read<IndexEntry>(section, at);
    if (i + 1 == info.header.indexCount) {
      info.functions.push_back({entry.function, 0});
      break;
    }
    readLanguageData(info, entry, read<IndexEntry>(section, at + sizeof entry));
    if (entry.pageOffset != 0) {
      readPage(info, entry);
    }
  }
  return info;
}

// The personality functions are pointers that the image imports or holds; which one, an encoding
// says with two bits.
static uint64_t personalityOf(const CompactInfo& info, uint32_t encoding, const Image& image) {
  const uint32_t number = encoding >> 28 & 3;
  if (number == 0) {
    return 0;
  }
  const auto offset = read<uint32_t>(
      info.section, info.header.personalityOffset + sizeof(uint32_t) * uint64_t{number - 1});
  const auto* slot = reinterpret_cast<const uint64_t*>(image.header + offset);
  if (number > info.header.personalityCount || !isInside(image, slot, sizeof *slot)) {
    refuse("__unwind_info: personality %u does not exist", number);
  }
  return *slot;
}

static void addFunction(FrameTable& table, const CompactInfo& info, const CompactFunction& function,
                        uint32_t end, const Image& image) {
  if (!describesFrame(function.encoding) || end <= function.start) {
    return;  // described in __eh_frame, or not at all
  }
  Frame frame{};
  frame.codeAlignment = 1;
  frame.dataAlignment = -8;
  frame.begin = reinterpret_cast<uint64_t>(image.header) + function.start;
  frame.size = end - function.start;
  frame.personality = personalityOf(info, function.encoding, image);
  const auto data = info.languageData.find(function.start);
  if ((function.encoding & kHasLanguageData) != 0 && data != info.languageData.end()) {
    frame.languageData = reinterpret_cast<uint64_t>(image.header) + data->second;
  }
  describeFrame(frame, function.encoding, image);
  appendFrame(table, frame);
}

void addCompactFrames(FrameTable& table, const Image& image) {
  const Bytes section = sectionBytes(image, "__unwind_info");
  if (section.at == section.end) {
    return;
  }
  const CompactInfo info = readInfo(section);
  for (size_t i = 0; i + 1 < info.functions.size(); ++i) {
    addFunction(table, info, info.functions[i], info.functions[i + 1].start, image);
  }
}

}  // namespace macrun
