#include "tests/macos/run/unwind/frame_table.h"

#include <cstring>

// The form is that of the Linux Standard Base, "Exception Frames": for each function a common
// information entry of its own and a frame description entry.

namespace macrun {

constexpr uint8_t kAbsolute = 0x00;      // DW_EH_PE_absptr
constexpr uint8_t kReturnRegister = 16;  // of x86-64 in DWARF

static void append32(std::vector<uint8_t>& bytes, uint32_t value) {
  const auto* first = reinterpret_cast<const uint8_t*>(&value);
  bytes.insert(bytes.end(), first, first + sizeof value);
}

static void append64(std::vector<uint8_t>& bytes, uint64_t value) {
  const auto* first = reinterpret_cast<const uint8_t*>(&value);
  bytes.insert(bytes.end(), first, first + sizeof value);
}

static void append(std::vector<uint8_t>& bytes, const std::vector<uint8_t>& more) {
  bytes.insert(bytes.end(), more.begin(), more.end());
}

void appendUleb(std::vector<uint8_t>& bytes, uint64_t value) {
  while (value > 0x7F) {
    bytes.push_back(static_cast<uint8_t>(value | 0x80));
    value >>= 7;
  }
  bytes.push_back(static_cast<uint8_t>(value));
}

void appendSleb(std::vector<uint8_t>& bytes, int64_t value) {
  while (value < -64 || value > 63) {
    bytes.push_back(static_cast<uint8_t>(value | 0x80));
    value >>= 7;
  }
  bytes.push_back(static_cast<uint8_t>(value & 0x7F));
}

// Writes the entry's length in front of it, and pads it with instructions that do nothing.
static void appendEntry(std::vector<uint8_t>& bytes, std::vector<uint8_t> entry) {
  while ((entry.size() + sizeof(uint32_t)) % 8 != 0) {
    entry.push_back(0);
  }
  append32(bytes, static_cast<uint32_t>(entry.size()));
  append(bytes, entry);
}

static std::vector<uint8_t> commonEntry(const Frame& frame) {
  std::vector<uint8_t> entry;
  append32(entry, 0);  // no function's
  entry.push_back(1);  // version
  const char* augmentation = frame.personality != 0 ? "zPLR" : "zR";
  entry.insert(entry.end(), augmentation, augmentation + strlen(augmentation) + 1);
  appendUleb(entry, frame.codeAlignment);
  appendSleb(entry, frame.dataAlignment);
  entry.push_back(kReturnRegister);
  if (frame.personality != 0) {
    constexpr uint8_t kSize = 1 + 8 + 1 + 1;
    entry.push_back(kSize);
    entry.push_back(kAbsolute);
    append64(entry, frame.personality);
    entry.push_back(kAbsolute);  // of the language's data
  } else {
    entry.push_back(1);
  }
  entry.push_back(kAbsolute);  // of the function's address
  append(entry, frame.first);
  return entry;
}

void appendFrame(FrameTable& table, const Frame& frame) {
  const size_t common = table.bytes.size();
  appendEntry(table.bytes, commonEntry(frame));
  std::vector<uint8_t> entry;
  const size_t distance = table.bytes.size() + sizeof(uint32_t) - common;
  append32(entry, static_cast<uint32_t>(distance));
  append64(entry, frame.begin);
  append64(entry, frame.size);
  if (frame.personality != 0) {
    entry.push_back(sizeof frame.languageData);
    append64(entry, frame.languageData);
  } else {
    entry.push_back(0);
  }
  append(entry, frame.then);
  appendEntry(table.bytes, entry);
}

void endTable(FrameTable& table) {
  append32(table.bytes, 0);
}

}  // namespace macrun
