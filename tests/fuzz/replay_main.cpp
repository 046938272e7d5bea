// Runs one fuzz target over the files of its corpus, in the order of their names.
// Usage: NAME_replay FOLDER

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "tests/fuzz/fuzz_target.h"

static std::vector<std::filesystem::path> filesIn(const char* folder) {
  std::vector<std::filesystem::path> files;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    if (entry.is_regular_file()) {
      files.push_back(entry.path());
    }
  }
  std::sort(files.begin(), files.end());
  return files;
}

int main(int argc, char** argv) {
  if (argc != 2) {
    fprintf(stderr, "usage: %s FOLDER\n", argv[0]);
    return 2;
  }
  const std::vector<std::filesystem::path> files = filesIn(argv[1]);
  for (const std::filesystem::path& file : files) {
    fprintf(stderr, "replaying %s\n", file.c_str());
    std::ifstream stream(file, std::ios::binary);
    const std::vector<char> bytes{std::istreambuf_iterator<char>(stream), {}};
    LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size());
  }
  fprintf(stderr, "%zu inputs replayed\n", files.size());
  return files.empty() ? 1 : 0;
}
