// Downloaded and carried archives, as the LZMA tool decompresses them: whatever the bytes are,
// there is the whole result or InputError, and never a part of one.

#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "tests/fuzz/fuzz_target.h"
#include "tools/formats/lzma.h"
#include "tools/system/input_error.h"

static bool decompress(const std::string& in, const std::string& out) {
  try {
    tools::lzmaDecompress(in, out);
  } catch (const tools::InputError&) {
    return false;
  }
  return true;
}

static std::string contentOf(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size > 4096) {
    return 0;
  }
  const std::string folder = fuzz::emptyFolder();
  fuzz::writeFile(folder + "/in", std::string(data, data + size));
  const bool done = decompress(folder + "/in", folder + "/out");
  fuzz::require(done == std::ifstream(folder + "/out").good(), "the whole result or none");
  if (done) {
    // What was read is written again, and read as the same.
    tools::lzmaCompress(folder + "/out", folder + "/again");
    fuzz::require(decompress(folder + "/again", folder + "/same"), "its own output can be read");
    fuzz::require(contentOf(folder + "/out") == contentOf(folder + "/same"), "the same bytes");
  }
  return 0;
}
