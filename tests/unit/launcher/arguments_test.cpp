#include "launcher/arguments.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "launcher/installation/tail_reader.h"
#include "tests/support/capture.h"

using Texts = std::vector<std::string>;

// Parses a command line; the words stay alive as long as a process's argument vector would.
class ParseArguments : public testing::Test {
 protected:
  ParseArguments() {
    clazz = nullptr;
    classPathArray = nullptr;
    jvmArgumentsCount = classPathArrayCount = appArgumentsCount = 0;
  }

  void parse(const Texts& words) {
    words_ = words;
    words_.insert(words_.begin(), "/path/of/the/executable");
    for (std::string& word : words_) {
      vector_.push_back(word.data());
    }
    vector_.push_back(nullptr);
    parseArguments(static_cast<int>(words_.size()), vector_.data());
  }

  Texts words_;
  std::vector<char*> vector_;
};

static Texts textsOf(int count, char** texts) {
  return {texts, texts + count};
}

static Texts options() {
  return textsOf(jvmArgumentsCount, jvmArguments);
}

static Texts classPath() {
  return textsOf(classPathArrayCount, classPathArray);
}

static Texts arguments() {
  return textsOf(appArgumentsCount, appArguments);
}

static Texts manyWords(int count, const std::string& prefix) {
  Texts words;
  for (int i = 0; i < count; ++i) {
    words.push_back(prefix + std::to_string(i));
  }
  return words;
}

TEST_F(ParseArguments, ASecondClassPathReplacesTheFirstAndNeverReachesTheApplication) {
  parse({"-Xmx1g", "-cp", "a.jar:b.jar", "com.x.Main", "-v", "-cp", "c.jar", "z"});
  EXPECT_EQ((Texts{"-Xmx1g"}), options());
  EXPECT_STREQ("com.x.Main", clazz);
  EXPECT_EQ((Texts{"-v", "z"}), arguments());
  EXPECT_EQ((Texts{"c.jar"}), classPath());
}

TEST_F(ParseArguments, TheLongSpellingOfTheClassPathOptionIsTheSame) {
  parse({"-classpath", "a.jar", "M"});
  EXPECT_EQ((Texts{"a.jar"}), classPath());
  EXPECT_EQ(Texts{}, options());
}

TEST_F(ParseArguments, OnlyTheExactClassPathOptionCounts) {
  parse({"-cp:a.jar", "--class-path", "-Cp", "M"});
  EXPECT_EQ((Texts{"-cp:a.jar", "--class-path", "-Cp"}), options());
  EXPECT_EQ(nullptr, classPathArray);
}

TEST_F(ParseArguments, WithOnlyTheExecutablesPathSetsNothing) {
  parse({});
  EXPECT_EQ(nullptr, clazz);
  EXPECT_EQ(nullptr, classPathArray);
  EXPECT_EQ(0, jvmArgumentsCount + classPathArrayCount + appArgumentsCount);
}

TEST_F(ParseArguments, WithoutAnyWordSetsNothing) {
  char* none[] = {nullptr};
  parseArguments(0, none);
  EXPECT_EQ(nullptr, clazz);
}

TEST_F(ParseArguments, WithOptionsOnlyLeavesTheClassNull) {
  parse({"-Xmx1g", "-cp", "a.jar"});
  EXPECT_EQ(nullptr, clazz);
  EXPECT_EQ((Texts{"-Xmx1g"}), options());
}

TEST_F(ParseArguments, TheGlobalsPointIntoTheArgumentVector) {
  parse({"-Xmx1g", "-cp", "a.jar", "M", "z"});
  EXPECT_EQ(vector_[1], jvmArguments[0]);
  EXPECT_EQ(vector_[3], classPathArray[0]);
  EXPECT_EQ(vector_[4], clazz);
  EXPECT_EQ(vector_[5], appArguments[0]);
}

TEST_F(ParseArguments, AnEmptyWordIsTheClassAndAnEmptyArgumentIsKept) {
  parse({"", "", "a"});
  EXPECT_STREQ("", clazz);
  EXPECT_EQ((Texts{"", "a"}), arguments());
}

TEST_F(ParseArguments, AClassPathOptionAsTheLastWordIsLoggedAndChangesNothing) {
  const Texts lines = test::logLinesOf([this] { parse({"-cp", "a.jar", "M", "x", "-cp"}); });
  EXPECT_EQ((Texts{"[Launcher] ERROR - No class path after -cp"}), lines);
  EXPECT_EQ((Texts{"a.jar"}), classPath());
  EXPECT_EQ((Texts{"x"}), arguments());
}

TEST_F(ParseArguments, AThousandOptionsAndAThousandArgumentsAreKept) {
  Texts words = manyWords(1000, "-D");
  words.push_back("M");
  const Texts more = manyWords(1000, "a");
  words.insert(words.end(), more.begin(), more.end());
  EXPECT_EQ(Texts{}, test::logLinesOf([&] { parse(words); }));
  EXPECT_EQ(manyWords(1000, "-D"), options());
  EXPECT_EQ(more, arguments());
}

TEST_F(ParseArguments, OptionsBeyondTheThousandthAreLoggedAndLeftOut) {
  Texts words = manyWords(1001, "-D");
  words.push_back("M");
  EXPECT_EQ((Texts{"[Launcher] ERROR - More than 1000 JVM options, ignoring -D1000"}),
            test::logLinesOf([&] { parse(words); }));
  EXPECT_EQ(manyWords(1000, "-D"), options());
  EXPECT_STREQ("M", clazz);
}

TEST_F(ParseArguments, ArgumentsBeyondTheThousandthAreLoggedAndLeftOut) {
  Texts words = manyWords(1002, "a");
  words.insert(words.begin(), "M");
  EXPECT_EQ((Texts{"[Launcher] ERROR - More than 1000 application arguments, ignoring a1000",
                   "[Launcher] ERROR - More than 1000 application arguments, ignoring a1001"}),
            test::logLinesOf([&] { parse(words); }));
  EXPECT_EQ(manyWords(1000, "a"), arguments());
}

// What split() stores, and the count that it reports.
struct Split {
  explicit Split(std::string text) : text_(std::move(text)) {
    parts_ = split(text_.data(), ':', &count);
  }
  const char* at(int i) const { return parts_[i]; }
  const char* text() const { return text_.data(); }

  int count = -1;

 private:
  std::string text_;
  char** parts_;
};

TEST(SplitText, WithoutSeparatorGivesTheTextItself) {
  const Split parts("a.jar");
  EXPECT_EQ(1, parts.count);
  EXPECT_EQ(parts.text(), parts.at(0));
}

TEST(SplitText, OfAnEmptyTextGivesOneEmptyPart) {
  const Split parts("");
  EXPECT_EQ(1, parts.count);
  EXPECT_STREQ("", parts.at(0));
}

TEST(SplitText, OfTwoPartsCountsOnlyTheLastAndStoresTheFirstBehindIt) {
  const Split parts("a.jar:b.jar");
  EXPECT_EQ(1, parts.count);
  EXPECT_STREQ("b.jar", parts.at(0));
  EXPECT_STREQ("a.jar", parts.at(1));
}

TEST(SplitText, WithATrailingSeparatorCountsEveryPartInReverseOrder) {
  const Split parts("a.jar:b.jar:");
  EXPECT_EQ(2, parts.count);
  EXPECT_STREQ("b.jar", parts.at(0));
  EXPECT_STREQ("a.jar", parts.at(1));
}

TEST(SplitText, SkipsEmptyPartsButCountsTheirSeparators) {
  const Split parts("a::b");
  EXPECT_EQ(2, parts.count);
  EXPECT_STREQ("b", parts.at(0));
  EXPECT_STREQ("a", parts.at(1));
}

TEST(SplitText, WithALeadingSeparatorHasNoFirstPart) {
  const Split parts(":b:c");
  EXPECT_EQ(2, parts.count);
  EXPECT_STREQ("c", parts.at(0));
  EXPECT_STREQ("b", parts.at(1));
}

TEST(SplitText, OfSeparatorsOnlyCountsThemAndStoresNothing) {
  const Split parts("::");
  EXPECT_EQ(2, parts.count);
  EXPECT_EQ(nullptr, parts.at(0));
  EXPECT_EQ(nullptr, parts.at(1));
}

TEST(SplitText, LeavesTheTextAsItIs) {
  const Split parts("a:b:c");
  EXPECT_STREQ("a:b:c", parts.text());
}

static std::string loggedValue(const char* value) {
  return test::capture([&] { printTruncated("App Name", value); }).out.substr(10);
}

TEST(PrintTruncated, LogsAValueOf99CharactersWhole) {
  const std::string value(99, 'x');
  EXPECT_EQ("[Launcher] App Name = " + value + "\n", loggedValue(value.c_str()));
}

TEST(PrintTruncated, LogsTheFirst99OfAHundredCharactersFollowedByDots) {
  EXPECT_EQ("[Launcher] App Name = " + std::string(99, 'x') + "...\n",
            loggedValue((std::string(99, 'x') + "y").c_str()));
}

TEST(PrintTruncated, LogsANullValueWithoutALineEnd) {
  EXPECT_EQ("[Launcher] App Name = NULL", loggedValue(nullptr));
}

TEST(PrintTruncated, TakesPercentSignsAsTheyAre) {
  EXPECT_EQ("[Launcher] App Name = %s%n\n", loggedValue("%s%n"));
}
