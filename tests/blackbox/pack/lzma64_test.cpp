#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>

#include "tests/support/files.h"
#include "tests/support/process.h"
#include "tests/support/product_system.h"
#include "tests/support/temp_folder.h"

using Names = std::vector<std::string>;

class Lzma64 : public testing::Test {
 protected:
  test::Result lzma64(const std::vector<std::string>& arguments) {
    test::Command command;
    command.arguments = {test::product("lzma64")};
    command.arguments.insert(command.arguments.end(), arguments.begin(), arguments.end());
    return test::run(command);
  }

  std::string compressed(const std::string& data) {
    test::writeFile(folder_ / "in", data);
    EXPECT_EQ(0, lzma64({"e", folder_ / "in", folder_ / "compressed"}).status);
    return test::readFile(folder_ / "compressed");
  }

  // Decompresses `bytes`, expecting no output and nothing else left behind when that fails.
  test::Result decompress(const std::string& bytes) {
    test::writeFile(folder_ / "d/x.l2", bytes);
    test::Result result = lzma64({"d", folder_ / "d/x.l2", folder_ / "d/x"});
    EXPECT_EQ(result.status == 0, test::exists(folder_ / "d/x"));
    EXPECT_EQ(result.status == 0 ? (Names{"x", "x.l2"}) : Names{"x.l2"},
              test::namesIn(folder_ / "d"));
    EXPECT_EQ(result.status == 0, result.err.empty());
    return result;
  }

  test::TempFolder folder_;
};

TEST_F(Lzma64, DecompressesWhatItCompressed) {
  const std::string text(1000000, 'x');
  for (const std::string& data : {std::string(), std::string(1, '\0'), test::noise(70000), text,
                                  text + test::noise(300000)}) {
    const std::string packed = compressed(data);
    ASSERT_EQ(0, decompress(packed).status);
    EXPECT_TRUE(data == test::readFile(folder_ / "d/x"));
    EXPECT_EQ(packed, compressed(data));
    std::remove((folder_ / "d/x").c_str());
  }
}

TEST_F(Lzma64, WritesAndReadsTheFormatOfOtherTools) {
  compressed("some text");
  test::Command command;
  command.arguments = {"/usr/bin/xz", "--format=lzma", "-dc", folder_ / "compressed"};
  EXPECT_EQ("some text", test::run(command).out);
  command.arguments = {"/usr/bin/xz", "--format=lzma", "-kc", folder_ / "in"};
  ASSERT_EQ(0, decompress(test::run(command).out).status);
  EXPECT_EQ("some text", test::readFile(folder_ / "d/x"));
}

TEST_F(Lzma64, RefusesAFileThatIsCutShort) {
  const std::string packed = compressed("a small file, a small file, and its end");
  EXPECT_EQ(1, decompress(packed.substr(0, packed.size() / 2)).status);
  EXPECT_EQ(1, decompress(packed.substr(0, packed.size() - 1)).status);
}

TEST_F(Lzma64, RefusesBytesBehindTheEnd) {
  EXPECT_EQ(1, decompress(compressed("text") + "x").status);
}

TEST_F(Lzma64, RefusesWhatIsNoLzma) {
  EXPECT_EQ(1, decompress("").status);
  EXPECT_EQ(1, decompress("this is a text file, not compressed at all").status);
  EXPECT_EQ(1, decompress(std::string(100, '\0')).status);
  EXPECT_EQ(1, decompress(test::noise(5000)).status);
}

TEST_F(Lzma64, KeepsAnOlderOutputWhenTheInputIsDamaged) {
  test::writeFile(folder_ / "out", "older");
  test::writeFile(folder_ / "in", "junk");
  EXPECT_EQ(1, lzma64({"d", folder_ / "in", folder_ / "out"}).status);
  EXPECT_EQ("older", test::readFile(folder_ / "out"));
}

TEST_F(Lzma64, ReplacesALinkInThePlaceOfItsOutput) {
  test::writeFile(folder_ / "precious", "precious");
  compressed("text");
  ASSERT_EQ(0, symlink((folder_ / "precious").c_str(), (folder_ / "out").c_str()));
  EXPECT_EQ(0, lzma64({"d", folder_ / "compressed", folder_ / "out"}).status);
  EXPECT_EQ("precious", test::readFile(folder_ / "precious"));
  EXPECT_EQ("text", test::readFile(folder_ / "out"));
}

TEST_F(Lzma64, GivesItsOutputThePermissionsOfItsInput) {
  compressed("text");
  ASSERT_EQ(0, chmod((folder_ / "compressed").c_str(), 0755));
  EXPECT_EQ(0, lzma64({"d", folder_ / "compressed", folder_ / "out"}).status);
  EXPECT_EQ(0755u, test::modeOf(folder_ / "out"));
}

TEST_F(Lzma64, NamesAnInputThatIsMissingOrNoFile) {
  for (const std::string& in : {folder_ / "missing", folder_.path()}) {
    const test::Result result = lzma64({"d", in, folder_ / "out"});
    EXPECT_EQ(1, result.status);
    EXPECT_NE(std::string::npos, result.err.find(in));
  }
  EXPECT_FALSE(test::exists(folder_ / "out"));
}

TEST_F(Lzma64, NamesAnOutputThatCannotBeWritten) {
  compressed("text");
  const std::string out = folder_ / "missing/out";
  const test::Result result = lzma64({"d", folder_ / "compressed", out});
  EXPECT_EQ(1, result.status);
  EXPECT_NE(std::string::npos, result.err.find(out));
}

TEST_F(Lzma64, ShowsItsUsageForAnythingElse) {
  for (const std::vector<std::string>& arguments :
       {std::vector<std::string>{}, {"x", "a", "b"}, {"d", "a"}, {"d", "a", "b", "c"}}) {
    const test::Result result = lzma64(arguments);
    EXPECT_EQ(2, result.status);
    EXPECT_EQ(0u, result.err.find("usage: lzma64 d IN OUT"));
  }
}
