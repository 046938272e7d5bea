// A jar, of which every read stays inside it, and data in its compression format, which never
// unpack to more than is allowed.

#include <string>

#include "tests/fuzz/fuzz_target.h"
#include "tools/java/inflate.h"
#include "tools/java/jar_file.h"
#include "tools/java/jar_manifest.h"
#include "tools/system/input_error.h"

static const size_t kLongest = 64 * 1024;
static const size_t kMostUnpacked = 1 << 20;

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size > kLongest) {
    return 0;
  }
  const std::string bytes(data, data + size);
  try {
    fuzz::require(tools::inflate(bytes, kMostUnpacked).size() <= kMostUnpacked,
                  "no more is unpacked than is allowed");
  } catch (const tools::InputError&) {
  }
  try {
    const tools::JarFile jar(bytes, "the jar");
    (void)jar.libraries();
    (void)tools::manifestOf(jar);
  } catch (const tools::InputError& error) {
    const std::string text = error.what();
    fuzz::require(text.find("the jar") != std::string::npos, "every error names the jar");
  }
  return 0;
}
