#include "tests/support/run_record.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <mutex>
#include <string>

#include "tests/support/files.h"

namespace test {

static std::string nameOfRunningTest() {
  const testing::TestInfo* info = testing::UnitTest::GetInstance()->current_test_info();
  std::string name = info == nullptr ? std::string("outside")
                                     : std::string(info->test_suite_name()) + "." + info->name();
  std::replace(name.begin(), name.end(), '/', '_');
  return name;
}

void recordRun(const Result& result) {
  const char* folder = getenv("QUORVANE_RUN_RECORDS");
  if (folder == nullptr) {
    return;
  }
  const std::string ofTest = std::string(folder) + "/" + nameOfRunningTest();
  static std::mutex mutex;
  static int runs = 0;
  const std::lock_guard<std::mutex> lock(mutex);
  const int number = ++runs;
  if (number == 1) {
    std::filesystem::remove_all(ofTest);  // what an earlier run has kept
  }
  const std::string record = ofTest + "/" + std::to_string(number);
  writeFile(record + ".out", result.out);
  writeFile(record + ".err", result.err);
  writeFile(record + ".end", "status " + std::to_string(result.status) + ", signal " +
                                 std::to_string(result.signal) +
                                 (result.timedOut ? ", killed after its time\n" : "\n"));
}

}  // namespace test
