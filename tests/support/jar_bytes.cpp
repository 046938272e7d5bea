#include "tests/support/jar_bytes.h"

#include <algorithm>
#include <cstdint>

#include "tests/support/object_headers.h"

namespace test {

static uint32_t sumOf(const std::string& bytes) {
  uint32_t sum = 0xffffffff;
  for (const char byte : bytes) {
    sum ^= static_cast<unsigned char>(byte);
    for (int bit = 0; bit < 8; ++bit) {
      sum = (sum >> 1) ^ ((sum & 1) != 0 ? 0xedb88320 : 0);
    }
  }
  return ~sum;
}

std::string jarOf(const std::vector<std::pair<std::string, std::string>>& files) {
  std::string jar;
  std::string directory;
  for (const auto& [path, content] : files) {
    const std::string size = littleEndian(content.size(), 4);
    // Version, flags, method, time and date; the sum, both sizes, the lengths of name and extra.
    const std::string common = littleEndian(10, 2) + std::string(8, '\0') +
                               littleEndian(sumOf(content), 4) + size + size +
                               littleEndian(path.size(), 2) + std::string(2, '\0');
    directory += "PK\x01\x02" + littleEndian(10, 2) + common + std::string(10, '\0') +
                 littleEndian(jar.size(), 4) + path;
    jar += "PK\x03\x04" + common + path + content;
  }
  const std::string count = littleEndian(files.size(), 2);
  return jar + directory + "PK\x05\x06" + std::string(4, '\0') + count + count +
         littleEndian(directory.size(), 4) + littleEndian(jar.size(), 4) + std::string(2, '\0');
}

std::string jarOfClass(const std::string& className, const std::string& manifestLines) {
  std::vector<std::pair<std::string, std::string>> files;
  if (!manifestLines.empty()) {
    files.emplace_back("META-INF/MANIFEST.MF", "Manifest-Version: 1.0\r\n" + manifestLines);
  }
  std::string path = className;
  std::replace(path.begin(), path.end(), '.', '/');
  files.emplace_back(path + ".class", bigEndian(0xcafebabe, 4) + bigEndian(61, 4));
  return jarOf(files);
}

}  // namespace test
