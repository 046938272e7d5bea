#include "tests/support/product_system.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <map>

namespace test {

static std::string productFolder() {
  const char* other = getenv("QUORVANE_PRODUCT");
  return other == nullptr ? QUORVANE_BIN : other;
}

std::string product(const std::string& name) {
  return productFolder() + "/" + name;
}

bool productIsElsewhere() {
  return productFolder() != QUORVANE_BIN;
}

bool productIsForMacos() {
  static const unsigned char kMachO[] = {0xcf, 0xfa, 0xed, 0xfe};
  char start[sizeof kMachO] = {};
  std::ifstream(product("launcher"), std::ios::binary).read(start, sizeof start);
  return memcmp(start, kMachO, sizeof start) == 0;
}

int productErrno(int error) {
  // As <sys/errno.h> of macOS numbers them; up to 34 but for EAGAIN both systems agree.
  static const std::map<int, int> kOnMacos = {
      {EAGAIN, 35}, {ELOOP, 62}, {ENAMETOOLONG, 63}, {ENOTEMPTY, 66}, {ETIMEDOUT, 60}};
  if (!productIsForMacos()) {
    return error;
  }
  const auto found = kOnMacos.find(error);
  return found == kOnMacos.end() ? error : found->second;
}

std::string productMissingDisplay() {
  return productIsForMacos() ? "No window server: this login session has no graphic access."
                             : "No display: DISPLAY names no window system that can be reached.";
}

size_t longestPath() {
  return productIsForMacos() ? 1024 : 4096;
}

std::string jvmLibraryPlace() {
  return productIsForMacos() ? "lib/server/libjvm.dylib" : "lib/server/libjvm.so";
}

std::vector<std::string> displayVariables() {
  return productIsForMacos() ? std::vector<std::string>{} : std::vector<std::string>{"DISPLAY"};
}

std::string testRuntime() {
  return productIsElsewhere() ? QUORVANE_TEST_RUNTIME "-macos" : QUORVANE_TEST_RUNTIME;
}

}  // namespace test
