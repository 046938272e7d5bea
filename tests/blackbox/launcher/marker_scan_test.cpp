// The Tail marker must not stand in any executable that is built from these sources: the search for
// an appended record would stop there.

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <filesystem>
#include <ostream>
#include <string>
#include <vector>

#include "formats/tail_marker.h"
#include "tests/support/files.h"
#include "tests/support/process.h"
#include "tests/support/temp_folder.h"

namespace fs = std::filesystem;
using Texts = std::vector<std::string>;

static std::string tailMarker() {
  char* block = allocAndInitMarker();
  const std::string bytes(block, TAIL_MARKER_SIZE);
  free(block);
  return bytes;
}

static bool holds(const std::string& path, const std::string& bytes) {
  return test::readFile(path).find(bytes) != std::string::npos;
}

TEST(MarkerScan, NoBuiltExecutableHoldsTheMarker) {
  const std::string wanted = tailMarker();
  Texts scanned;
  for (const auto& entry : fs::recursive_directory_iterator(QUORVANE_BIN)) {
    if (entry.is_regular_file()) {
      EXPECT_FALSE(holds(entry.path(), wanted)) << entry.path();
      scanned.push_back(entry.path().filename());
    }
  }
  EXPECT_EQ(1, std::count(scanned.begin(), scanned.end(), "launcher"));
  EXPECT_EQ(1, std::count(scanned.begin(), scanned.end(), "quorvane-pack"));
}

TEST(MarkerScan, AnAppendedMarkerIsSeen) {
  const test::TempFolder folder;
  const std::string path = folder / "launcher";
  test::writeFile(path, test::readFile(QUORVANE_BIN "/launcher") + tailMarker());
  EXPECT_TRUE(holds(path, tailMarker()));
}

// A compiler and one way to call it.
struct Build {
  std::string compiler;
  Texts flags;
};

static void PrintTo(const Build& build, std::ostream* out) {
  *out << build.compiler;
  for (const std::string& flag : build.flags) {
    *out << ' ' << flag;
  }
}

class MarkerObject : public testing::TestWithParam<Build> {};

// One constant for two words is where a compiler begins to put the whole together.
TEST_P(MarkerObject, HoldsNoTwoNeighbouringWordsOfTheMarker) {
  const test::TempFolder folder;
  const std::string object = folder / "tail_marker.o";
  test::Command command;
  command.arguments = {GetParam().compiler,
                       "-std=c++17",
                       "-I" QUORVANE_SOURCE,
                       "-c",
                       QUORVANE_SOURCE "/formats/tail_marker.cpp",
                       "-o",
                       object};
  command.arguments.insert(command.arguments.end(), GetParam().flags.begin(),
                           GetParam().flags.end());
  const test::Result result = test::run(command);
  ASSERT_EQ(0, result.status) << result.err;
  const std::string code = test::readFile(object);
  const std::string wanted = tailMarker();
  EXPECT_NE(std::string::npos, code.find(wanted.substr(0, 8)));
  for (size_t at = 0; at + 16 <= wanted.size(); at += 8) {
    EXPECT_EQ(std::string::npos, code.find(wanted.substr(at, 16))) << "offset " << at;
  }
}

static std::vector<Build> builds() {
  std::vector<Build> all;
  for (const char* compiler : {QUORVANE_GXX, QUORVANE_CLANGXX}) {
    for (const Texts& flags : std::vector<Texts>{{"-O0"},
                                                 {"-O1"},
                                                 {"-O2"},
                                                 {"-O3"},
                                                 {"-Os"},
                                                 {"-O3", "-march=skylake-avx512"},
                                                 {"-O1", "-fsanitize=address,undefined"}}) {
      all.push_back({compiler, flags});
    }
  }
  return all;
}

static std::string nameOf(const testing::TestParamInfo<Build>& info) {
  std::string name = fs::path(info.param.compiler).filename();
  for (const std::string& flag : info.param.flags) {
    name += flag;
  }
  for (char& c : name) {
    c = isalnum(static_cast<unsigned char>(c)) != 0 ? c : '_';
  }
  return name;
}

INSTANTIATE_TEST_SUITE_P(Compilers, MarkerObject, testing::ValuesIn(builds()), nameOf);
