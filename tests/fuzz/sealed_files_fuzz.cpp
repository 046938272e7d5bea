// A list of sealed files: it is read or refused, and the same list read again is the same.

#include <string>

#include "tests/fuzz/fuzz_target.h"
#include "tools/apple/sealed_files.h"
#include "tools/system/input_error.h"

static const size_t kLongest = 16 * 1024;

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size > kLongest) {
    return 0;
  }
  const std::string text(data, data + size);
  try {
    const tools::SealedFiles files = tools::readSealedFiles(text);
    fuzz::require(text.find("files2") != std::string::npos, "a list has its name");
    fuzz::require(text.find("<plist") != std::string::npos, "a list is a property list");
    for (const auto& [name, file] : files) {
      fuzz::require(file.digest.size() <= size && file.link.size() <= size, "nothing is added");
      fuzz::require(name.size() <= size, "names come from the text");
    }
    fuzz::require(files.size() == tools::readSealedFiles(text + "\n").size(),
                  "what follows changes nothing");
  } catch (const tools::InputError&) {
  }
  return 0;
}
