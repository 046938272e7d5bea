#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "launcher/jvm/jvm_launch.h"
#include "tests/support/capture.h"

using Texts = std::vector<std::string>;

static const std::string kOption = "-Djava.class.path=";

static std::string optionFor(std::vector<const char*> entries) {
  char* block =
      getClassPathFor(static_cast<int>(entries.size()), const_cast<char**>(entries.data()));
  const std::string option = block;
  free(block);
  return option;
}

TEST(ClassPathOption, OfNoEntriesIsEmpty) {
  EXPECT_EQ("", optionFor({}));
  char* block = getClassPathFor(-1, nullptr);
  EXPECT_STREQ("", block);
  free(block);
}

TEST(ClassPathOption, OfOneEmptyEntryHasNothingBehindTheEqualsSign) {
  EXPECT_EQ(kOption, optionFor({""}));
}

TEST(ClassPathOption, JoinsTheEntriesInTheirOrder) {
  EXPECT_EQ(kOption + "c.jar:b.jar:a.jar", optionFor({"c.jar", "b.jar", "a.jar"}));
}

TEST(ClassPathOption, KeepsEmptyEntries) {
  EXPECT_EQ(kOption + ":b::", optionFor({"", "b", "", ""}));
}

TEST(ClassPathOption, CountedSlotsWithoutAPartAddNothing) {
  EXPECT_EQ(kOption + "b:a", optionFor({nullptr, "b", "a", nullptr}));
  EXPECT_EQ(kOption, optionFor({nullptr}));
}

TEST(ClassPathOption, ThatJustFitsIsWhole) {
  const std::string entry(CLASS_PATH_SIZE - 1, 'p');
  EXPECT_EQ(kOption + entry, optionFor({entry.c_str()}));
}

TEST(ClassPathOption, EntriesThatDoNotFitAreLoggedAndLeftOut) {
  const std::string tooLong(CLASS_PATH_SIZE, 'p');
  const Texts lines = test::logLinesOf([&] {
    EXPECT_EQ(kOption + "b:c", optionFor({tooLong.c_str(), "b", tooLong.c_str(), "c"}));
  });
  const std::string line =
      "[JNILaunch] ERROR - Class path does not fit its 50000 bytes, leaving out " +
      std::string(200, 'p');
  EXPECT_EQ((Texts{line, line}), lines);
}

TEST(CloneString, GivesACopyOfItsOwn) {
  const char text[] = "-Xmx1g";
  char* copy = cloneString(text);
  EXPECT_STREQ(text, copy);
  EXPECT_NE(text, copy);
  free(copy);
}
