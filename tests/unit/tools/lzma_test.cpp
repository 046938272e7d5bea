#include "tools/formats/lzma.h"

#include <gtest/gtest.h>

#include "tests/support/files.h"
#include "tests/support/temp_folder.h"
#include "tools/system/input_error.h"

class LzmaFile : public testing::Test {
 protected:
  LzmaFile() {
    for (int i = 0; i < 80; ++i) {
      data_.push_back(static_cast<char>(i * i * 31 >> 3));
    }
    test::writeFile(folder_ / "in", data_);
    tools::lzmaCompress(folder_ / "in", folder_ / "compressed");
    packed_ = test::readFile(folder_ / "compressed");
  }

  bool isRefused(const std::string& bytes) {
    test::writeFile(folder_ / "d/in", bytes);
    try {
      tools::lzmaDecompress(folder_ / "d/in", folder_ / "d/out");
      return false;
    } catch (const tools::InputError&) {
      EXPECT_EQ(std::vector<std::string>{"in"}, test::namesIn(folder_ / "d"));
      return true;
    }
  }

  test::TempFolder folder_;
  std::string data_ = "a small file, a small file, a small file, and then some noise";
  std::string packed_;
};

TEST_F(LzmaFile, CutShortAnywhereIsRefused) {
  for (size_t length = 0; length < packed_.size(); ++length) {
    EXPECT_TRUE(isRefused(packed_.substr(0, length))) << length;
  }
}

// The format has no checksum: a changed bit is noticed because the data then do not end where they
// should. Nearly all are; the rest has to be found by what covers the file, an archive's signature.
TEST_F(LzmaFile, WithAChangedBitIsRefusedOrTheSameInAtLeastNinetyNineOfAHundredCases) {
  size_t wrong = 0;
  const size_t bits = packed_.size() * 8;
  for (size_t bit = 0; bit < bits; ++bit) {
    std::string changed = packed_;
    changed[bit / 8] = static_cast<char>(changed[bit / 8] ^ 1 << bit % 8);
    if (!isRefused(changed)) {
      wrong += test::readFile(folder_ / "d/out") == data_ ? 0 : 1;
      std::remove((folder_ / "d/out").c_str());
    }
  }
  EXPECT_LT(wrong * 100, bits);
}
