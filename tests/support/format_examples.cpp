#include "tests/support/format_examples.h"

#include <gtest/gtest.h>

#include <cctype>
#include <cstdio>

#include "tests/support/files.h"

namespace test {

std::string formatBlock(const std::string& kind, const std::string& name) {
  const std::string document = readFile(QUORVANE_SOURCE "/docs/formats.md");
  const std::string opening = "```" + kind + " " + name + "\n";
  const size_t start = document.find(opening);
  EXPECT_NE(std::string::npos, start) << "docs/formats.md has no block " << opening;
  if (start == std::string::npos) {
    return "";
  }
  const size_t first = start + opening.size();
  return document.substr(first, document.find("```", first) - first);
}

static std::string hexLine(const std::string& bytes, size_t offset) {
  char number[20];
  snprintf(number, sizeof number, "%08zx:", offset);
  std::string line = number;
  std::string characters;
  for (size_t i = 0; i < 16; ++i) {
    if (offset + i >= bytes.size()) {
      line += "   ";
      continue;
    }
    const auto byte = static_cast<unsigned char>(bytes[offset + i]);
    snprintf(number, sizeof number, " %02x", byte);
    line += number;
    characters += byte < 0x80 && isprint(byte) != 0 ? bytes[offset + i] : '.';
  }
  return line + "  " + characters + "\n";
}

std::string hexDump(const std::string& bytes) {
  std::string dump;
  for (size_t offset = 0; offset < bytes.size(); offset += 16) {
    dump += hexLine(bytes, offset);
  }
  return dump;
}

}  // namespace test
