#include "tests/support/files.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>

namespace fs = std::filesystem;

namespace test {

void writeFile(const std::string& path, const std::string& bytes, unsigned mode) {
  fs::create_directories(fs::path(path).parent_path());
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  out << bytes;
  out.close();
  ASSERT_TRUE(out.good()) << path;
  ASSERT_EQ(0, chmod(path.c_str(), mode)) << path;
}

std::string readFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  EXPECT_TRUE(in.good()) << path;
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

bool exists(const std::string& path) {
  return fs::symlink_status(path).type() != fs::file_type::not_found;
}

std::string makeDeepFolder(const std::string& root, int depth, unsigned mode) {
  std::string path = root;
  for (int i = 0; i < depth; ++i) {
    path += "/d";
    EXPECT_EQ(0, mkdir(path.c_str(), mode)) << path;
  }
  return path;
}

size_t openFiles() {
  return static_cast<size_t>(std::distance(fs::directory_iterator("/dev/fd"), {}));
}

void allowOpenFiles(unsigned count) {
  const rlimit limit{count, count};
  setrlimit(RLIMIT_NOFILE, &limit);
}

void allowStack(unsigned bytes) {
  const rlimit limit{bytes, bytes};
  setrlimit(RLIMIT_STACK, &limit);
}

unsigned modeOf(const std::string& path) {
  struct stat status {};
  EXPECT_EQ(0, lstat(path.c_str(), &status)) << path;
  return status.st_mode & 07777u;
}

std::vector<std::string> namesIn(const std::string& folder) {
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(folder)) {
    names.push_back(entry.path().filename());
  }
  std::sort(names.begin(), names.end());
  return names;
}

std::string noise(size_t size) {
  std::string bytes(size, '\0');
  uint32_t state = 1;
  for (char& byte : bytes) {
    state = state * 1664525u + 1013904223u;
    byte = static_cast<char>(state >> 24);
  }
  return bytes;
}

std::string field(const std::string& text) {
  return text + std::string(1, '\0');
}

std::vector<std::string> linesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) {
    lines.push_back(line);
  }
  return lines;
}

static std::string withoutElapsedTime(const std::string& line) {
  size_t end = 1;
  while (end < line.size() && isdigit(static_cast<unsigned char>(line[end])) != 0) {
    ++end;
  }
  const bool hasPrefix = line.size() >= 10 && line[0] == '+' && end > 1;
  return hasPrefix ? line.substr(std::max<size_t>(end + 1, 10)) : line;
}

std::vector<std::string> logLinesOf(const std::string& standardOutput) {
  std::vector<std::string> lines = linesOf(standardOutput);
  std::transform(lines.begin(), lines.end(), lines.begin(), withoutElapsedTime);
  return lines;
}

bool containsInOrder(const std::vector<std::string>& lines,
                     const std::vector<std::string>& wanted) {
  auto from = lines.begin();
  for (const std::string& line : wanted) {
    from = std::find(from, lines.end(), line);
    if (from == lines.end()) {
      ADD_FAILURE() << "missing, or out of order: " << line;
      return false;
    }
    ++from;
  }
  return true;
}

}  // namespace test
