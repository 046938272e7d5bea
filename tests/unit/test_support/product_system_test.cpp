#include "tests/support/product_system.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdlib>
#include <string>

#include "tests/support/files.h"
#include "tests/support/temp_folder.h"

// Executables of another build in a folder of the test's, of which only the launcher's first bytes
// are looked at.
class ProductElsewhere : public testing::Test {
 protected:
  void place(const std::string& launcher) {
    test::writeFile(folder_ / "launcher", launcher);
    setenv("QUORVANE_PRODUCT", folder_.path().c_str(), 1);
  }

  test::TempFolder folder_;
};

TEST(Product, IsThisBuildsWithoutTheVariable) {
  EXPECT_FALSE(test::productIsElsewhere());
  EXPECT_EQ(QUORVANE_BIN "/extractor", test::product("extractor"));
}

TEST_F(ProductElsewhere, IsFoundInTheFolderThatTheVariableNames) {
  place("");
  EXPECT_TRUE(test::productIsElsewhere());
  EXPECT_EQ(folder_ / "extractor", test::product("extractor"));
}

TEST_F(ProductElsewhere, IsForMacosWhereItIsAMachOFile) {
  place("\xcf\xfa\xed\xfe and more");
  EXPECT_TRUE(test::productIsForMacos());
  EXPECT_EQ(35, test::productErrno(EAGAIN));
  EXPECT_EQ(ENOENT, test::productErrno(ENOENT));
  EXPECT_EQ(1024u, test::longestPath());
  EXPECT_EQ("lib/server/libjvm.dylib", test::jvmLibraryPlace());
  EXPECT_TRUE(test::displayVariables().empty());
}

TEST_F(ProductElsewhere, IsNotForMacosWhereItIsAnotherFile) {
  place(
      "\x7f"
      "ELF");
  EXPECT_FALSE(test::productIsForMacos());
  EXPECT_EQ(EAGAIN, test::productErrno(EAGAIN));
  EXPECT_EQ("lib/server/libjvm.so", test::jvmLibraryPlace());
}
