#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "tests/unit/launch/launching.h"

namespace fs = std::filesystem;
using Texts = std::vector<std::string>;

class RememberedOptions : public Launching {
 protected:
  RememberedOptions() { scene.installFakeRuntime(scene.runtime()); }

  // The application starts nevertheless, with `options`, and with one error line.
  void expectUsed(const Texts& options, const std::string& error) {
    const Launched launched = launch();
    EXPECT_EQ(0, launched.result);
    EXPECT_EQ(options, startedOptions());
    EXPECT_EQ(std::to_string(options.size()),
              test::propertyIn(written(), "qvstat_jvm_options_count"));
    EXPECT_EQ((Texts{error}), errorsIn(launched.lines));
  }

  static Texts optionsOf(size_t count) {
    Texts options;
    for (size_t i = 0; i < count; ++i) {
      options.push_back("-Doption." + std::to_string(i) + "=" + std::to_string(i * i));
    }
    return options;
  }

  void forgetLaunch() const {
    for (const std::string& file : scene.propertiesFiles()) {
      fs::remove(file);
    }
    fs::remove(scene / "record");
  }

  // How many entries the command line has without remembered options, with some arguments.
  size_t startedWithout() {
    arguments = {"first", "last"};
    launch();
    const size_t count = startedWith().size();
    forgetLaunch();
    return count;
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
  const std::string whole = "-D" + std::string(97, 'a');
  const std::string cut = "-D" + std::string(98, 'b');
  scene.writeOptionsFile({whole, cut});
  const Launched launched = launch();
  EXPECT_EQ((Texts{whole, cut}), startedOptions());
  EXPECT_TRUE(test::containsInOrder(
      launched.lines, {"[Extractor] Launch Prop: jvm_options_0 = " + whole,
                       "[Extractor] Launch Prop: jvm_options_1 = " + cut.substr(0, 99) + "..."}));
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

// Nothing but a missing file counts as one: what cannot be looked at may be there at the next try.
TEST_F(RememberedOptions, OfALinkThatLeadsToItselfAreTriedAgainAsThoseOfAFileThatCannotBeOpened) {
  fs::create_directories(fs::path(scene.optionsFile()).parent_path());
  fs::create_symlink(scene.optionsFile(), scene.optionsFile());
  onPause = [this](int number) {
    if (number == 3) {
      std::remove(scene.optionsFile().c_str());
      scene.writeOptionsFile({"-Dlate=1"});
    }
  };
  const Launched launched = launch();
  EXPECT_EQ(3, launched.pauses);
  EXPECT_EQ((Texts{"-Dlate=1"}), startedOptions());
}

TEST_F(RememberedOptions, OfALinkThatLeadsNowhereOrBelowAFileAreNoneWithoutAPause) {
  fs::create_directories(fs::path(scene.optionsFile()).parent_path());
  fs::create_symlink("nowhere", scene.optionsFile());
  EXPECT_EQ(0, launch().pauses);
  forgetLaunch();
  fs::remove_all(fs::path(scene.optionsFile()).parent_path());
  test::writeFile(fs::path(scene.optionsFile()).parent_path(), "a file");
  const Launched launched = launch();
  EXPECT_EQ(0, launched.pauses);
  EXPECT_EQ((Texts{"JRE LSO file does not exist"}), errorsIn(launched.lines));
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
  test::writeFile(scene.optionsFile(), test::field("-1") + test::field("-Da=b"));
  expectUsed({}, "JRE LSO file counts -1 options and holds 1");
}

TEST_F(RememberedOptions, OfAFileThatEndsBeforeTheLastOneAreThoseThatItHolds) {
  test::writeFile(scene.optionsFile(), test::field("2") + test::field("-Dname=value"));
  expectUsed({"-Dname=value"}, "JRE LSO file counts 2 options and holds 1");
}

TEST_F(RememberedOptions, OfAFileWithoutItsLastZeroByteAreAllUsed) {
  test::writeFile(scene.optionsFile(), test::field("2") + test::field("-Da=b") + "-Dname=val");
  const Launched launched = launch();
  EXPECT_EQ((Texts{"-Da=b", "-Dname=val"}), startedOptions());
  EXPECT_TRUE(errorsIn(launched.lines).empty());
}

TEST_F(RememberedOptions, AreUsedAsFarAsTheCommandLineHasRoomForThemAndForAllElse) {
  const size_t others = startedWithout();
  for (const size_t count : {499 - others, 499 - others + 1, size_t{495}, size_t{5000}}) {
    scene.writeOptionsFile(optionsOf(count));
    const Launched launched = launch();
    EXPECT_EQ(0, launched.result);
    EXPECT_EQ(499u, startedWith().size());
    EXPECT_EQ("last", startedWith().back());
    EXPECT_EQ(count == 499 - others, errorsIn(launched.lines).empty());
    forgetLaunch();
  }
}

TEST_F(RememberedOptions, AtTheEndOfAFileOfAbout200000BytesAreUsed) {
  const std::string last = "-Dlast=1";  // its last byte is the file's
  const std::string passedOver = test::field(std::string(1999, 'x'));
  for (const size_t size : {199999, 200000, 200001}) {
    std::string bytes = test::field("100");
    for (int i = 0; i < 98; ++i) {
      bytes += passedOver;
    }
    bytes += test::field(std::string(size - bytes.size() - 1 - last.size(), 'x')) + last;
    ASSERT_EQ(size, bytes.size());
    test::writeFile(scene.optionsFile(), bytes);
    const Launched launched = launch();
    EXPECT_EQ(0, launched.result);
    EXPECT_EQ((Texts{"-Dlast=1"}), startedOptions()) << size;
    EXPECT_TRUE(errorsIn(launched.lines).empty()) << size;
    forgetLaunch();
  }
}

TEST_F(RememberedOptions, AreUsedAsFarAsThePropertiesHaveRoom) {
  const Texts options(250, "-D" + std::string(1000, 'o'));
  scene.writeOptionsFile(options);
  const Launched launched = launch();
  EXPECT_EQ(0, launched.result);
  const size_t used = startedOptions().size();
  EXPECT_LT(190u, used);
  EXPECT_LT(used, 200u);
  EXPECT_EQ(std::to_string(used), test::propertyIn(written(), "qvstat_jvm_options_count"));
  EXPECT_EQ((Texts{"JRE LSO file: there is room for " + std::to_string(used) + " of 250 options"}),
            errorsIn(launched.lines));
}

TEST_F(RememberedOptions, ThatAreNoneArePassedOver) {
  const std::string longest = "-D" + std::string(1020, 'x');
  const std::string tooLong = longest + "x";
  std::string bytes = test::field("7");
  for (const std::string& text :
       {std::string(), std::string("-Da=b"), std::string("com.example.Other"), tooLong,
        std::string("--add-opens"), std::string("java.base/x=y"), longest}) {
    bytes += test::field(text);
  }
  test::writeFile(scene.optionsFile(), bytes);
  const Launched launched = launch();
  EXPECT_EQ(0, launched.result);
  EXPECT_EQ((Texts{"-Da=b", "--add-opens", "java.base/x=y", longest}), startedOptions());
  EXPECT_EQ("4", test::propertyIn(written(), "qvstat_jvm_options_count"));
  EXPECT_TRUE(test::containsInOrder(
      launched.lines, {"[Extractor] LSO option 0 is not used, it is empty",
                       "[Extractor] LSO option 2 is not used, it does not begin with a dash",
                       "[Extractor] LSO option 3 is not used, it is too long"}));
}

TEST_F(RememberedOptions, OfAPipeOrAFolderAreNoneAndTheLaunchDoesNotWait) {
  fs::create_directories(fs::path(scene.optionsFile()).parent_path());
  for (const bool isPipe : {true, false}) {
    if (isPipe) {
      ASSERT_EQ(0, mkfifo(scene.optionsFile().c_str(), 0600));
    } else {
      ASSERT_TRUE(fs::create_directory(scene.optionsFile()));
    }
    const Launched launched = launch();
    EXPECT_EQ(0, launched.result);
    EXPECT_TRUE(startedOptions().empty());
    EXPECT_EQ(0, launched.pauses);
    EXPECT_EQ((Texts{"JRE LSO file is not a regular file"}), errorsIn(launched.lines));
    forgetLaunch();
    fs::remove(scene.optionsFile());
  }
}
