#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "tests/unit/launch/launching.h"

using Texts = std::vector<std::string>;

class RememberedOptions : public Launching {
 protected:
  RememberedOptions() { scene.installFakeRuntime(scene.runtime()); }

  // The application starts nevertheless.
  void expectNoneOfADamagedFile() {
    const Launched launched = launch();
    EXPECT_EQ(0, launched.result);
    EXPECT_TRUE(startedOptions().empty());
    EXPECT_EQ("(none)", test::propertyIn(written(), "qvstat_jvm_options_count"));
    EXPECT_EQ((Texts{"JRE LSO file is damaged, no option of it is used"}),
              errorsIn(launched.lines));
  }

  static Texts optionsOf(size_t count) {
    Texts options;
    for (size_t i = 0; i < count; ++i) {
      options.push_back("-Doption." + std::to_string(i) + "=" + std::to_string(i * i));
    }
    return options;
  }

  Texts startedOptions() const {
    const Texts started = startedWith();
    const auto mainClass = std::find(started.begin(), started.end(), "com.sample.Main");
    return {started.begin() + 3, mainClass};
  }
};

TEST_F(RememberedOptions, OfCountZeroAddTheCountAlone) {
  scene.writeOptionsFile({});
  const Launched launched = launch();
  EXPECT_EQ("0", test::propertyIn(written(), "qvstat_jvm_options_count"));
  EXPECT_EQ("(none)", test::propertyIn(written(), "qvstat_jvm_options_0"));
  EXPECT_TRUE(startedOptions().empty());
  EXPECT_TRUE(test::containsInOrder(
      launched.lines,
      {"[Extractor] Checking LSO file", "[Extractor] Reading " + scene.optionsFile(),
       "[Extractor] JRE LSO file exists", "[Extractor] Found 0 JVM Options"}));
}

TEST_F(RememberedOptions, OfCountOneFollowTheClassPathAndJoinTheProperties) {
  scene.writeOptionsFile({"-Dname=a b\"c"});
  const Launched launched = launch();
  EXPECT_EQ((Texts{"-Dname=a b\"c"}), startedOptions());
  const Texts texts = written();
  ASSERT_GE(texts.size(), 4u);
  EXPECT_EQ((Texts{"qvstat_jvm_options_count", "1", "qvstat_jvm_options_0", "-Dname=a b\"c"}),
            Texts(texts.end() - 4, texts.end()));
  EXPECT_TRUE(test::containsInOrder(launched.lines,
                                    {"[Extractor] Launch Prop: jvm_options_0 = -Dname=a b\"c"}));
}

TEST_F(RememberedOptions, OfCountFortyKeepTheirOrder) {
  const Texts options = optionsOf(40);
  scene.writeOptionsFile(options);
  launch();
  EXPECT_EQ(options, startedOptions());
  EXPECT_EQ("40", test::propertyIn(written(), "qvstat_jvm_options_count"));
  EXPECT_EQ(options[39], test::propertyIn(written(), "qvstat_jvm_options_39"));
}

TEST_F(RememberedOptions, LongerThanNinetyNineCharactersAreCutInTheLogOnly) {
  const std::string whole(99, 'a');
  const std::string cut(100, 'b');
  scene.writeOptionsFile({whole, cut});
  const Launched launched = launch();
  EXPECT_EQ((Texts{whole, cut}), startedOptions());
  EXPECT_TRUE(test::containsInOrder(
      launched.lines,
      {"[Extractor] Launch Prop: jvm_options_0 = " + whole,
       "[Extractor] Launch Prop: jvm_options_1 = " + std::string(99, 'b') + "..."}));
}

TEST_F(RememberedOptions, OfAMissingFileAreNone) {
  const Launched launched = launch();
  EXPECT_EQ(0, launched.result);
  EXPECT_EQ((Texts{"JRE LSO file does not exist"}), errorsIn(launched.lines));
  EXPECT_EQ(0, launched.pauses);
  EXPECT_EQ("(none)", test::propertyIn(written(), "qvstat_jvm_options_count"));
}

TEST_F(RememberedOptions, OfAnEmptyFileAreCountedAsNone) {
  test::writeFile(scene.optionsFile(), "");
  launch();
  EXPECT_EQ("0", test::propertyIn(written(), "qvstat_jvm_options_count"));
}

TEST_F(RememberedOptions, OfAFileThatExistsButCannotBeOpenedAreNoneAfterFivePauses) {
  test::makeUnopenable(scene.optionsFile());
  const Launched launched = launch();
  EXPECT_EQ(0, launched.result);
  EXPECT_EQ(5, launched.pauses);
  EXPECT_EQ((Texts{"JRE LSO file does not exist"}), errorsIn(launched.lines));
  for (int i = 0; i < 5; ++i) {
    const std::string line =
        "[Extractor] LSO file does exist. Retrying (" + std::to_string(i) + ")...";
    EXPECT_EQ(1, std::count(launched.lines.begin(), launched.lines.end(), line)) << line;
  }
}

TEST_F(RememberedOptions, OfAFileThatCanBeOpenedAtTheThirdTryAreRead) {
  test::makeUnopenable(scene.optionsFile());
  onPause = [this](int number) {
    if (number == 2) {
      std::remove(scene.optionsFile().c_str());
      scene.writeOptionsFile({"-Dlate=1"});
    }
  };
  const Launched launched = launch();
  EXPECT_EQ(2, launched.pauses);
  EXPECT_EQ((Texts{"-Dlate=1"}), startedOptions());
  EXPECT_TRUE(errorsIn(launched.lines).empty());
}

TEST_F(RememberedOptions, AreNotLookedForWithoutAPrivateRuntime) {
  scene.writeOptionsFile({"-Dname=value"});
  useProbe();
  const Launched launched = launch();
  EXPECT_TRUE(hasError(launched.lines, "Not a private JRE (no need to check for LSO file)"));
  EXPECT_EQ("(none)", test::propertyIn(written(), "qvstat_jvm_options_count"));
}

TEST_F(RememberedOptions, OfANegativeCountAreNone) {
  test::writeFile(scene.optionsFile(), test::field("-1"));
  expectNoneOfADamagedFile();
}

TEST_F(RememberedOptions, OfMoreThanTheCommandLineHoldsAreNone) {
  scene.writeOptionsFile(optionsOf(497));
  expectNoneOfADamagedFile();
}

TEST_F(RememberedOptions, OfAFileThatEndsBeforeTheLastOneAreNone) {
  test::writeFile(scene.optionsFile(), test::field("2") + test::field("-Dname=value"));
  expectNoneOfADamagedFile();
}

TEST_F(RememberedOptions, OfAFileThatEndsInsideOfOneAreNone) {
  test::writeFile(scene.optionsFile(), test::field("1") + "-Dname=val");
  expectNoneOfADamagedFile();
}

TEST_F(RememberedOptions, ThatDoNotFitThePropertiesEndTheProcess) {
  scene.writeOptionsFile(Texts(250, std::string(1000, 'o')));
  const Launched launched = launch();
  EXPECT_FALSE(launched.returned);
  EXPECT_EQ(1, launched.result);
  ASSERT_EQ(1u, errorsIn(launched.lines).size());
  EXPECT_EQ(0u, errorsIn(launched.lines)[0].find("Unable to launch: the property jvm_options_"));
  EXPECT_TRUE(scene.propertiesFiles().empty());
}
