#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "tests/support/files.h"

// Most tests of builds are for macOS too, and have stand-ins that no tool can sign.

namespace {

class UnsignedBuilds : public testing::Environment {
 public:
  void SetUp() override {
    std::string rest;
    const std::string path = std::string(getenv("PATH")) + ":";
    for (size_t start = 0; start < path.size();) {
      const size_t end = path.find(':', start);
      const std::string folder = path.substr(start, end - start);
      if (!test::exists(folder + "/rcodesign")) {
        rest += (rest.empty() ? "" : ":") + folder;
      }
      start = end + 1;
    }
    setenv("PATH", rest.c_str(), 1);
  }
};

const testing::Environment* const kUnsigned = AddGlobalTestEnvironment(new UnsignedBuilds);

}  // namespace
