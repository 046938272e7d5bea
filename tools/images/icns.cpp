#include "tools/images/icns.h"

#include <cstdint>
#include <string_view>
#include <vector>

namespace tools {

// The head of the file and of each element: a type and the length with this head, as big-endian
// number.
static const char kFileType[] = "icns";
constexpr size_t kTypeSize = 4;
constexpr size_t kHeadSize = 8;

namespace {

struct IconSize {
  const char* type;
  int side;  // in pixels
};

// Those that are PNG files on every system of the last ten years.
constexpr IconSize kSizes[] = {
    {"ic11", 32},    // 16 points at two pixels
    {"ic12", 64},    // 32 at two
    {"ic07", 128},   // 128
    {"ic13", 256},   // 128 at two
    {"ic08", 256},   // 256
    {"ic14", 512},   // 256 at two
    {"ic09", 512},   // 512
    {"ic10", 1024},  // 512 at two
};

}  // namespace

static std::string element(const std::string& type, const std::string& content) {
  const auto length = static_cast<uint32_t>(kHeadSize + content.size());
  std::string bytes = type;
  for (int shift = 24; shift >= 0; shift -= 8) {
    bytes.push_back(static_cast<char>(length >> shift & 0xFF));
  }
  return bytes + content;
}

std::string encodeIcns(const Picture& picture) {
  std::string elements;
  for (const IconSize& size : kSizes) {
    elements += element(size.type, encodePng(scaled(picture, size.side, size.side)));
  }
  return element(kFileType, elements);
}

static size_t lengthAt(const std::string& bytes, size_t head) {
  size_t length = 0;
  for (size_t i = kTypeSize; i < kHeadSize; ++i) {
    length = length << 8 | static_cast<unsigned char>(bytes[head + i]);
  }
  return length;
}

// Finds the contents of the elements. Returns what is wrong, or nothing.
static std::string readElements(const std::string& bytes, std::vector<std::string_view>* contents) {
  for (size_t at = kHeadSize; at < bytes.size();) {
    const size_t left = bytes.size() - at;
    const size_t length = left < kHeadSize ? 0 : lengthAt(bytes, at);
    if (length < kHeadSize || length > left) {
      return "is damaged: its pictures do not fill it";
    }
    contents->push_back(std::string_view(bytes).substr(at + kHeadSize, length - kHeadSize));
    at += length;
  }
  return contents->empty() ? "has no picture" : "";
}

std::string faultOfIcns(const std::string& bytes) {
  if (bytes.size() < kHeadSize || bytes.compare(0, kTypeSize, kFileType) != 0) {
    return "is not a valid .icns image";
  }
  if (lengthAt(bytes, 0) != bytes.size()) {
    return "is damaged: it has " + std::to_string(bytes.size()) + " bytes, and says that it has " +
           std::to_string(lengthAt(bytes, 0));
  }
  std::vector<std::string_view> contents;
  return readElements(bytes, &contents);
}

std::optional<Picture> largestIn(const std::string& icns) {
  std::vector<std::string_view> contents;
  std::optional<Picture> largest;
  if (!faultOfIcns(icns).empty() || !readElements(icns, &contents).empty()) {
    return largest;
  }
  for (const std::string_view content : contents) {
    std::optional<Picture> picture = decodePng(std::string(content));
    if (picture && (!largest || picture->width > largest->width)) {
      largest = std::move(picture);
    }
  }
  return largest;
}

}  // namespace tools
