#include <map>

#include "tests/macos/run/stop.h"
#include "tests/macos/run/unwind/frame_table.h"

// Reads __eh_frame, which has the form of the Linux Standard Base, "Exception Frames".

namespace macrun {

// How an address is written, DW_EH_PE_….
constexpr uint8_t kOmitted = 0xFF, kRelativeToPlace = 0x10, kIndirect = 0x80;

struct CommonEntry {
  Frame frame;  // what the functions have in common
  uint8_t functionEncoding = 0, dataEncoding = kOmitted;
};

using CommonEntries = std::map<const uint8_t*, CommonEntry>;

static int64_t takeEncoded(Bytes& bytes, uint8_t form) {
  switch (form) {
    case 0x0:  // a whole address
    case 0x4:
    case 0xC:
      return take<int64_t>(bytes);
    case 0x3:
      return take<uint32_t>(bytes);
    case 0xB:
      return take<int32_t>(bytes);
    default:
      refuse("%s: an address has the encoding %#x", bytes.what, form);
  }
}

static uint64_t takeAddress(Bytes& bytes, uint8_t encoding, const Image& image) {
  if (encoding == kOmitted) {
    return 0;
  }
  const uint8_t* place = bytes.at;
  int64_t value = takeEncoded(bytes, encoding & 0x0F);
  if (value == 0) {
    return 0;
  }
  if ((encoding & 0x70) == kRelativeToPlace) {
    value += reinterpret_cast<int64_t>(place);
  }
  if ((encoding & kIndirect) == 0) {
    return static_cast<uint64_t>(value);
  }
  const auto* slot = reinterpret_cast<const uint64_t*>(value);
  if (!isInside(image, slot, sizeof *slot)) {
    refuse("%s: an address lies outside the executable", bytes.what);
  }
  return *slot;
}

static void takeAugmentation(CommonEntry& common, Bytes& bytes, const char* letters,
                             const Image& image) {
  if (*letters != 'z') {
    return;
  }
  const uint64_t size = takeUleb(bytes);
  Bytes data = part(bytes, 0, size);
  for (++letters; *letters != 0; ++letters) {
    if (*letters == 'P') {
      const auto encoding = take<uint8_t>(data);
      common.frame.personality = takeAddress(data, encoding, image);
    } else if (*letters == 'L') {
      common.dataEncoding = take<uint8_t>(data);
    } else if (*letters == 'R') {
      common.functionEncoding = take<uint8_t>(data);
    }
  }
  takeBytes(bytes, size);
}

static CommonEntry takeCommonEntry(Bytes entry, const Image& image) {
  CommonEntry common;
  take<uint8_t>(entry);  // version
  const char* letters = takeText(entry);
  common.frame.codeAlignment = takeUleb(entry);
  common.frame.dataAlignment = takeSleb(entry);
  takeUleb(entry);  // the register of the return address
  takeAugmentation(common, entry, letters, image);
  common.frame.first.assign(entry.at, entry.end);
  return common;
}

static Frame takeFrame(Bytes entry, const CommonEntry& common, const Image& image) {
  Frame frame = common.frame;
  frame.begin = takeAddress(entry, common.functionEncoding, image);
  frame.size = static_cast<uint64_t>(takeEncoded(entry, common.functionEncoding & 0x0F));
  const uint64_t size = takeUleb(entry);
  Bytes data = part(entry, 0, size);
  frame.languageData = size > 0 ? takeAddress(data, common.dataEncoding, image) : 0;
  takeBytes(entry, size);
  frame.then.assign(entry.at, entry.end);
  return frame;
}

void addDwarfFrames(FrameTable& table, const Image& image) {
  CommonEntries commonEntries;
  Bytes section = sectionBytes(image, "__eh_frame");
  while (section.at < section.end) {
    const uint8_t* start = section.at;
    const auto size = take<uint32_t>(section);
    if (size == 0) {
      return;
    }
    Bytes entry = part(section, 0, size);
    takeBytes(section, size);
    const uint8_t* place = entry.at;
    const auto distance = take<uint32_t>(entry);
    if (distance == 0) {
      commonEntries[start] = takeCommonEntry(entry, image);
      continue;
    }
    const auto common = commonEntries.find(place - distance);
    if (common == commonEntries.end()) {
      refuse("__eh_frame: an entry belongs to none before it");
    }
    appendFrame(table, takeFrame(entry, common->second, image));
  }
}

}  // namespace macrun
