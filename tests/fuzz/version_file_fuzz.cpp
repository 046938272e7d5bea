// The version file of an update site: its text ends before the first blank or line end,
// it fits its buffer, and no text that may name a folder or a file of the site leads elsewhere.

#include <cstdio>
#include <string>

#include "extractor/run/names.h"
#include "extractor/runtime/version_file.h"
#include "support/owned.h"
#include "tests/fuzz/fuzz_target.h"

static const size_t kLongest = 4096;

static std::string wantedText(const std::string& bytes) {
  std::string text = bytes.substr(0, bytes.find_first_of(" \r\n"));
  for (char& c : text) {
    c = c == '\0' ? '?' : c;
  }
  return text;
}

static bool isHarmless(const std::string& text) {
  for (const char c : text) {
    const bool isPlain = (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
    if (!isPlain && c != '.' && c != '_' && c != '+' && c != '-') {
      return false;
    }
  }
  return true;
}

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size == 0 || size > kLongest) {
    return 0;
  }
  std::string bytes(data, data + size);
  const Stream file(fmemopen(bytes.data(), bytes.size(), "rb"));
  const Block<char> version(static_cast<char*>(malloc(VERSION_TEXT_SIZE)));
  const bool isShortEnough = readVersionText(file.get(), version.get());
  const std::string wanted = wantedText(bytes);
  fuzz::require(isShortEnough == (wanted.size() < VERSION_TEXT_SIZE), "too long is refused");
  if (isShortEnough) {
    fuzz::require(version.get() == wanted, "the text is what stands first");
    fuzz::require(isVersionText(version.get()) == isHarmless(wanted), "the same characters");
  }
  return 0;
}
