#include "tools/apple/jar_libraries.h"

#include <algorithm>
#include <cstdint>

#include "tools/system/texts.h"
#include "tools/system/whole_file.h"

namespace tools {

static const char kEndRecord[] = "PK\x05\x06";
static const char kEntryRecord[] = "PK\x01\x02";
static const size_t kEndRecordSize = 22;
static const size_t kEntryRecordSize = 46;

static size_t numberAt(const std::string& bytes, size_t at, unsigned count) {
  size_t value = 0;
  for (unsigned i = 0; i < count && at + i < bytes.size(); ++i) {
    value |= static_cast<size_t>(static_cast<uint8_t>(bytes[at + i])) << (8 * i);
  }
  return value;
}

std::vector<std::string> nativeLibrariesIn(const std::string& path) {
  std::vector<std::string> libraries;
  const std::string bytes = readWhole(path);
  const size_t end = bytes.rfind(kEndRecord);
  if (end == std::string::npos || bytes.size() - end < kEndRecordSize) {
    return libraries;
  }
  size_t at = numberAt(bytes, end + 16, 4);
  while (at < bytes.size() && bytes.compare(at, 4, kEntryRecord) == 0) {
    const size_t nameSize = numberAt(bytes, at + 28, 2);
    const std::string name =
        at + kEntryRecordSize < bytes.size() ? bytes.substr(at + kEntryRecordSize, nameSize) : "";
    if (endsWith(name, ".dylib") || endsWith(name, ".jnilib")) {
      libraries.push_back(name);
    }
    at += kEntryRecordSize + nameSize + numberAt(bytes, at + 30, 2) + numberAt(bytes, at + 32, 2);
  }
  std::sort(libraries.begin(), libraries.end());
  return libraries;
}

}  // namespace tools
