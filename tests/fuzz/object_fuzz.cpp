// A file that may be a program or library: every read stays inside it, and the same bytes as part
// of a larger file are read alike.

#include <cstring>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "tests/fuzz/fuzz_target.h"
#include "tools/objects/object_reader.h"
#include "tools/system/input_error.h"

static const size_t kLongest = 64 * 1024;

// The texts of the parts; nothing for a damaged file.
static std::optional<std::string> textsOf(const tools::ByteSource& source) {
  try {
    std::string texts;
    for (const tools::ObjectPart& part : tools::readObject(source)) {
      fuzz::require(!part.target || part.text == tools::targetText(*part.target),
                    "a part is named after its target");
      fuzz::require(part.target || part.minimumSystem == 0, "a foreign part asks for no system");
      texts += part.text + "\n";
    }
    return texts;
  } catch (const tools::InputError&) {
    return std::nullopt;
  }
}

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size > kLongest) {
    return 0;
  }
  // A block of its exact size, so that a read beyond it is noticed.
  const std::unique_ptr<char[]> block(new char[size]);
  std::copy(data, data + size, block.get());
  size_t asked = 0;
  const auto alone = textsOf([&](uint64_t offset, size_t wanted) {
    asked += wanted;
    const size_t from = offset < size ? static_cast<size_t>(offset) : size;
    return std::string(block.get() + from, std::min(wanted, size - from));
  });
  fuzz::require(asked <= 64u << 20, "a small file is read in small pieces");

  const std::string path = fuzz::emptyFolder() + "/file";
  fuzz::writeFile(path, "in front" + std::string(data, data + size) + "behind");
  std::optional<std::string> inside;
  try {
    std::string texts;
    for (const tools::ObjectPart& part : tools::readObjectIn(path, 8, size, "it")) {
      texts += part.text + "\n";
    }
    inside = texts;
  } catch (const tools::InputError& error) {
    fuzz::require(strncmp(error.what(), "it is damaged: ", 15) == 0, "damage names the file");
  }
  fuzz::require(alone == inside, "a part of a file is read as a file of its own");
  return 0;
}
