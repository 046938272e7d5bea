#include "extractor/archives/decompress_file.h"

#include <gtest/gtest.h>

#include <string>

#include "support/process/exit_status.h"
#include "tests/support/files.h"
#include "tests/support/temp_folder.h"

// A tool that runs `body`, in which $3 is the file that it is to make.
class DecompressFile : public testing::Test {
 protected:
  bool isMadeBy(const std::string& body) {
    const std::string tool = folder_ / "tool";
    test::writeFile(tool, "#!/bin/sh\n" + body + "\n", 0755);
    test::writeFile(folder_ / "compressed", "x");
    return decompressFile(tool.c_str(), (folder_ / "compressed").c_str(),
                          (folder_ / "archive").c_str(), &failure_);
  }

  test::TempFolder folder_;
  Failure failure_ = Failure::ArchiveDamaged;
};

TEST_F(DecompressFile, TakesWhatAToolMadeThatSucceeded) {
  EXPECT_TRUE(isMadeBy("[ $1 = d ] && cat \"$2\" > \"$3\""));
  EXPECT_EQ("x", test::readFile(folder_ / "archive"));
}

TEST_F(DecompressFile, RefusesWhatAToolLeftThatFailed) {
  EXPECT_FALSE(isMadeBy("printf half > \"$3\"; exit 1"));
  EXPECT_EQ(Failure::NotUnpacked, failure_);
}

TEST_F(DecompressFile, SaysThatTheDiskIsFullWhereTheToolDoes) {
  EXPECT_FALSE(
      isMadeBy("printf half > \"$3\"; exit " + std::to_string(EXIT_STATUS_LZMA_DISK_FULL)));
  EXPECT_EQ(Failure::DiskFull, failure_);
}

TEST_F(DecompressFile, RefusesWhatAToolLeftThatWasKilled) {
  EXPECT_FALSE(isMadeBy("printf half > \"$3\"; kill -KILL $$"));
  EXPECT_EQ(Failure::NotUnpacked, failure_);
}

TEST_F(DecompressFile, RefusesAToolThatMadeNothing) {
  EXPECT_FALSE(isMadeBy("exit 0"));
  EXPECT_EQ(Failure::NotUnpacked, failure_);
}
