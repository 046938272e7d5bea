#include "launch/launch_properties.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/files/paths.h"
#include "tests/support/fake_clock.h"
#include "tests/support/files.h"
#include "tests/support/temp_folder.h"

using namespace std::string_literals;

// A buffer with `capacity` bytes of which those behind `content` show every write.
static std::vector<char> bufferOf(const std::string& content, size_t capacity = 200) {
  std::vector<char> buffer(capacity, '~');
  content.copy(buffer.data(), content.size());
  return buffer;
}

static std::string bytesOf(const std::vector<char>& buffer, size_t count) {
  return std::string(buffer.data(), count);
}

TEST(PropsLen, OfTwoZeroBytesIsZero) {
  EXPECT_EQ(0, propsLen("\0\0"));
}

TEST(PropsLen, OfTwoTextsIsTheOffsetOfTheFirstClosingZero) {
  EXPECT_EQ(3, propsLen("a\0b\0\0"));
}

TEST(AppendProp, ToAnEmptyBufferWritesAtItsStart) {
  std::vector<char> buffer = bufferOf("\0\0"s);
  appendProp(buffer.data(), "key");
  EXPECT_EQ("key\0\0~"s, bytesOf(buffer, 6));
}

TEST(AppendProp, BehindATextKeepsThatTextsZero) {
  std::vector<char> buffer = bufferOf("a\0\0"s);
  appendProp(buffer.data(), "b");
  EXPECT_EQ("a\0b\0\0~"s, bytesOf(buffer, 6));
}

TEST(AppendProp, OfAnEmptyTextStoresTheByteFour) {
  std::vector<char> buffer = bufferOf("a\0\0"s);
  appendProp(buffer.data(), "");
  EXPECT_EQ("a\0\x04\0\0~"s, bytesOf(buffer, 6));
}

TEST(ExtendProp, JoinsTheLastText) {
  std::vector<char> buffer = bufferOf("a\0b\0\0"s);
  extendProp(buffer.data(), "cd");
  EXPECT_EQ("a\0bcd\0\0~"s, bytesOf(buffer, 8));
}

TEST(ExtendProp, OfAnEmptyTextChangesNothing) {
  std::vector<char> buffer = bufferOf("a\0b\0\0"s);
  extendProp(buffer.data(), "");
  EXPECT_EQ("a\0b\0\0~"s, bytesOf(buffer, 6));
}

TEST(AddStaticProperty, WithAnEmptyValueStoresTheByteFour) {
  std::vector<char> buffer = bufferOf("\0\0"s);
  addStaticProperty(buffer.data(), "k", "");
  EXPECT_EQ("qvstat_k\0\x04\0\0~"s, bytesOf(buffer, 13));
}

TEST(AddDynamicProperty, PrefixesTheKey) {
  std::vector<char> buffer = bufferOf("\0\0"s);
  addStaticProperty(buffer.data(), "update_url", "D");
  addDynamicProperty(buffer.data(), "update_url", "http://127.0.0.1/");
  const std::string content = "qvstat_update_url\0D\0qvdyna_update_url\0http://127.0.0.1/\0\0"s;
  EXPECT_EQ(content + "~", bytesOf(buffer, content.size() + 1));
  EXPECT_EQ(static_cast<int>(content.size()) - 2, propsLen(buffer.data()));
}

TEST(PropertyFits, UpToTheLastByteOfAnEmptyBuffer) {
  std::vector<char> buffer = bufferOf("\0\0"s);
  const size_t wanted = "qvstat_key\0value\0\0"s.size();
  EXPECT_TRUE(propertyFits(buffer.data(), wanted, "key", "value"));
  EXPECT_FALSE(propertyFits(buffer.data(), wanted - 1, "key", "value"));
  addStaticProperty(buffer.data(), "key", "value");
  EXPECT_EQ('~', buffer[wanted]);
}

TEST(PropertyFits, UpToTheLastByteBehindOtherProperties) {
  std::vector<char> buffer = bufferOf("\0\0"s);
  addStaticProperty(buffer.data(), "a", "b");
  const size_t wanted = "qvstat_a\0b\0qvdyna_key\0\x04\0\0"s.size();
  EXPECT_TRUE(propertyFits(buffer.data(), wanted, "key", ""));
  EXPECT_FALSE(propertyFits(buffer.data(), wanted - 1, "key", ""));
  addDynamicProperty(buffer.data(), "key", "");
  EXPECT_EQ('\0', buffer[wanted - 1]);
  EXPECT_EQ('~', buffer[wanted]);
}

static std::string nameIn(const std::string& folder) {
  char path[PATH_BUFFER_SIZE];
  EXPECT_EQ(path, makeLaunchPropertiesFile(path, folder.c_str()));
  return path;
}

TEST(MakeLaunchPropertiesFile, NamesTimeAndEntryCountAndCreatesNothing) {
  const test::TempFolder folder;
  const std::string name = nameIn(folder.path());
  const std::string prefix = folder / "QVLaunchProperties-";
  ASSERT_EQ(prefix, name.substr(0, prefix.size()));
  const std::string rest = name.substr(prefix.size());
  const size_t dash = rest.find('-');
  ASSERT_NE(std::string::npos, dash);
  EXPECT_EQ(std::string::npos, rest.substr(0, dash).find_first_not_of("0123456789"));
  // "." and ".." alone.
  EXPECT_EQ("2", rest.substr(dash + 1));
  EXPECT_TRUE(test::namesIn(folder.path()).empty());
}

TEST(MakeLaunchPropertiesFile, OfTwoLaunchesInOneMillisecondDifferByTheCountOfEntriesAlone) {
  const test::TempFolder folder;
  const test::FakeClock clock(1457000000123);
  const std::string first = nameIn(folder.path());
  test::writeFile(first, "");
  const std::string second = nameIn(folder.path());
  ASSERT_EQ("-2", first.substr(first.size() - 2));
  EXPECT_EQ(first.substr(0, first.size() - 2) + "-3", second);
}

TEST(MakeLaunchPropertiesFile, ClosesTheFolderThatItCounts) {
  const test::TempFolder folder;
  const size_t before = test::openFiles();
  nameIn(folder.path());
  EXPECT_EQ(before, test::openFiles());
}

TEST(MakeLaunchPropertiesFile, CountsNothingInAFolderThatCannotBeOpened) {
  const test::TempFolder folder;
  const std::string name = nameIn(folder / "missing");
  EXPECT_EQ("-0", name.substr(name.size() - 2));
}
