// A large download held against a small one, each in a process of its own.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

#include "tests/support/background.h"
#include "tests/support/files.h"

class DownloadMemoryTest : public testing::Test {
 protected:
  DownloadMemoryTest()
      : server_({{QUORVANE_SOURCE "/tests/fakes/web_server.py"}}),
        port_(server_.waitForLine("listening ")) {}

  // Downloads that many bytes; returns the most memory that the process held, in kilobytes.
  long peakOf(const std::string& size) {
    const std::string url = "http://127.0.0.1:" + port_ + "/length?size=" + size;
    test::Command command{{QUORVANE_BIN "/download_driver", url, target_}};
    command.seconds = 120;
    const test::Result result = test::run(command);
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(std::filesystem::file_size(target_), std::stoull(size));
    const size_t peak = result.out.find("peak-kilobytes ");
    EXPECT_NE(peak, std::string::npos);
    return atol(result.out.c_str() + peak + 15);
  }

  test::TempFolder folder_;
  std::string target_ = folder_ / "file";
  test::Background server_;
  std::string port_;
};

TEST_F(DownloadMemoryTest, ThreeHundredMegabytesTakeNoMoreMemoryThanOne) {
  const long small = peakOf("1000000");
  const long large = peakOf("314572800");
  EXPECT_LT(large - small, 8 * 1024);
}
