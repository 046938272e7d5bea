#include "tests/support/unavailable.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

namespace test {

void unavailable(const char* reason) {
  const char* inCi = getenv("CI");
  if (inCi != nullptr && std::string(inCi) == "true") {
    FAIL() << "cannot be run here: " << reason;
  }
  GTEST_SKIP() << reason;
}

}  // namespace test
