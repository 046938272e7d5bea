#include "extractor/runtime/jre_layout.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "tests/support/capture.h"
#include "tests/support/files.h"
#include "tests/support/temp_folder.h"

namespace fs = std::filesystem;
using Lines = std::vector<std::string>;

static const char kName[] = "Quorvane-Mac64JRE-1407-complete";

// A bundle as it comes out of its archive.
static void writeBundle(const std::string& bundle) {
  const std::string home = bundle + "/Contents/Home";
  test::writeFile(bundle + "/Contents/Info.plist", "<plist/>");
  test::writeFile(bundle + "/Contents/MacOS/JavaAppletPlugin", "old executable", 0755);
  test::writeFile(home + "/bin/java", "#!/bin/sh\necho java\n", 0644);
  test::writeFile(home + "/bin/unpack200", "#!/bin/sh\necho unpack200\n", 0644);
  test::writeFile(home + "/lib/server/libjvm.dylib", "jvm");
  test::writeFile(home + "/lib/libnpjp2.dylib", "plug-in");
  test::writeFile(home + "/lib/jspawnhelper", "helper", 0644);
  test::writeFile(home + "/release", "JAVA_VERSION=\"11\"\n");
}

// What a tree consists of: each path below `root` with its kind, its mode, and its bytes or the
// text of the link, in which `root` itself is written as ROOT.
static std::map<std::string, std::string> treeOf(const std::string& root) {
  std::map<std::string, std::string> tree;
  for (const auto& entry : fs::recursive_directory_iterator(root)) {
    const std::string path = entry.path();
    std::string what;
    if (entry.is_symlink()) {
      what = fs::read_symlink(path);
      if (what.rfind(root, 0) == 0) {
        what.replace(0, root.size(), "ROOT");
      }
      what.insert(0, "link ");
    } else {
      const std::string mode = std::to_string(test::modeOf(path));
      what = entry.is_directory() ? "folder " + mode : "file " + mode + " " + test::readFile(path);
    }
    tree[path.substr(root.size())] = what;
  }
  return tree;
}

// The seven commands, for paths in which a shell finds nothing to interpret.
static Lines commandsFor(const std::string& bundle) {
  const std::string plain = bundle.substr(0, bundle.size() - 7);
  const std::string home = "\"" + bundle + "/Contents/Home\"";
  const std::string executable = "\"" + bundle + "/Contents/MacOS/JavaAppletPlugin\"";
  return {"mv " + home + "/* \"" + plain + "\"",
          "rm " + home + "/.* ",
          "rmdir " + home,
          "ln -s \"" + plain + "\" " + home,
          "rm " + executable,
          "ln -s \"" + plain + "/lib/libnpjp2.dylib\" " + executable,
          "chmod a+x \"\"" + plain + "/lib/jspawnhelper\""};
}

static void runInShell(const std::string& bundle) {
  const std::string plain = bundle.substr(0, bundle.size() - 7);
  if (mkdir(plain.c_str(), 0777) == 0) {
    chmod(plain.c_str(), 0777);
  }
  test::capture([&] {
    for (const std::string& command : commandsFor(bundle)) {
      static_cast<void>(system(command.c_str()) == 0);
    }
  });
}

static void runDirectly(const std::string& bundle) {
  test::capture([&] { initOSXJRE(bundle.c_str()); });
}

// Prepares two copies of the same bundle, one directly and one with the commands in a real shell,
// `times` times over, and compares what they leave.
static void expectSameAsShell(const std::function<void(const std::string& bundle)>& write,
                              int times = 1) {
  const test::TempFolder direct;
  const test::TempFolder shell;
  const std::string name = std::string(kName) + ".plugin";
  write(direct / name);
  write(shell / name);
  for (int i = 0; i < times; ++i) {
    runDirectly(direct / name);
    runInShell(shell / name);
    EXPECT_EQ(treeOf(shell.path()), treeOf(direct.path())) << "run " << i + 1;
  }
}

TEST(InitOSXJRE, LeavesWhatTheSevenCommandsLeaveInAShell) {
  expectSameAsShell(writeBundle);
}

TEST(InitOSXJRE, RunTwiceLeavesWhatTheCommandsRunTwiceLeave) {
  expectSameAsShell(writeBundle, 3);
}

TEST(InitOSXJRE, TreatsHiddenFilesAsTheCommandsDo) {
  expectSameAsShell([](const std::string& bundle) {
    writeBundle(bundle);
    test::writeFile(bundle + "/Contents/Home/.hidden", "x");
    test::writeFile(bundle + "/Contents/Home/.a", "x");
    test::writeFile(bundle + "/Contents/Home/..odd", "x");
    fs::create_symlink("/", bundle + "/Contents/Home/.link");
  });
}

namespace {

// A prepared bundle whose Java home held a hidden folder beside a hidden file.
struct BundleWithAHiddenFolder {
  explicit BundleWithAHiddenFolder(bool plainFolderStands) {
    writeBundle(bundle);
    test::writeFile(bundle + "/Contents/Home/.folder/file", "x");
    test::writeFile(bundle + "/Contents/Home/.file", "x");
    if (plainFolderStands) {
      fs::create_directory(plain);
    }
    runDirectly(bundle);
  }

  test::TempFolder folder;
  std::string plain = folder / kName;
  std::string bundle = plain + ".plugin";
};

}  // namespace

// The commands alone would leave the home where it is and make their link in it, so that the tools
// were at neither of their paths.
TEST(InitOSXJRE, WithAHiddenFolderInTheHomeLinksTheHomeToThePlainFolderWhichGetsIt) {
  for (const bool plainFolderStands : {false, true}) {
    const BundleWithAHiddenFolder prepared(plainFolderStands);
    EXPECT_EQ(prepared.plain, fs::read_symlink(prepared.bundle + "/Contents/Home").string());
    EXPECT_EQ((Lines{".folder", "bin", "lib", "release"}), test::namesIn(prepared.plain));
    EXPECT_EQ("x", test::readFile(prepared.plain + "/.folder/file"));
  }
}

TEST(InitOSXJRE, WithAHiddenFolderInTheHomeLeavesTheToolsWhereTheirPathsSay) {
  const BundleWithAHiddenFolder prepared(false);
  test::capture([&] {
    const std::unique_ptr<char, decltype(&free)> java(getJavaExecutable(prepared.bundle.c_str()),
                                                      &free);
    const std::unique_ptr<char, decltype(&free)> unpack200(
        getUnpack200Executable(prepared.bundle.c_str()), &free);
    EXPECT_EQ("java\n", test::run({{java.get()}}).out);
    EXPECT_EQ("unpack200\n", test::run({{unpack200.get()}}).out);
  });
}

TEST(InitOSXJRE, WithAHiddenFolderInTheHomeChangesNothingMateriallyOnASecondRun) {
  const BundleWithAHiddenFolder prepared(false);
  const auto first = treeOf(prepared.folder.path());
  runDirectly(prepared.bundle);
  auto second = treeOf(prepared.folder.path());
  EXPECT_EQ(1u, second.erase(std::string("/") + kName + "/" + kName));
  EXPECT_EQ(first, second);
}

TEST(InitOSXJRE, TreatsOddHomesAsTheCommandsDo) {
  expectSameAsShell([](const std::string& bundle) { fs::create_directories(bundle); });
  expectSameAsShell([](const std::string& bundle) {
    fs::create_directories(bundle + "/Contents/Home");
    fs::create_directories(bundle + "/Contents/MacOS/JavaAppletPlugin");
  });
  expectSameAsShell([](const std::string& bundle) {
    writeBundle(bundle);
    fs::create_symlink("nowhere", bundle + "/Contents/Home/dangling");
    fs::create_symlink("lib", bundle + "/Contents/Home/link");
  });
  expectSameAsShell(
      [](const std::string& bundle) { test::writeFile(bundle + "/Contents/Home", "a file"); });
  expectSameAsShell(
      [](const std::string& bundle) { test::writeFile(bundle + "/bin/java", "a plain home"); });
}

TEST(InitOSXJRE, MergesIntoAPlainFolderThatStandsAsTheCommandsDo) {
  expectSameAsShell([](const std::string& bundle) {
    writeBundle(bundle);
    const std::string plain = bundle.substr(0, bundle.size() - 7);
    test::writeFile(plain + "/release", "old");
    test::writeFile(plain + "/lib/old", "old");
    test::writeFile(plain + "/bin", "a file where a folder comes");
    test::writeFile(plain + "/.kept", "hidden");
  });
}

TEST(InitOSXJRE, KeepsTheModeOfAnEmptyPlainFolderThatStandsAndLogsNoChmod) {
  const auto write = [](const std::string& bundle) {
    writeBundle(bundle);
    const std::string plain = bundle.substr(0, bundle.size() - 7);
    fs::create_directory(plain);
    chmod(plain.c_str(), 0711);
  };
  expectSameAsShell(write);
  const test::TempFolder folder;
  const std::string bundle = folder / std::string(kName) + ".plugin";
  write(bundle);
  for (const std::string& line : test::logLinesOf([&] { initOSXJRE(bundle.c_str()); })) {
    EXPECT_EQ(std::string::npos, line.find("[ChMod]")) << line;
  }
}

TEST(InitOSXJRE, LogsItsSectionThePlainPathAndEveryCommandToTheCharacter) {
  const test::TempFolder folder;
  const std::string bundle = folder / std::string(kName) + ".plugin";
  writeBundle(bundle);
  const Lines lines = test::logLinesOf([&] { initOSXJRE(bundle.c_str()); });
  Lines wanted{std::string(48, '+'), "+++ Start: OSX JRE initialisation", std::string(48, '+'),
               "[OSX JRE] Alias JRE path is " + (folder / kName),
               "[ChMod] Executing chmod 777 \"" + (folder / kName) + "\""};
  for (const std::string& command : commandsFor(bundle)) {
    wanted.push_back("[LNS] Running " + command);
  }
  wanted.insert(wanted.end(),
                {std::string(48, '-'), "--- End: OSX JRE initialisation", std::string(48, '-')});
  EXPECT_EQ(wanted, lines);
}

TEST(InitOSXJRE, PutsTheJvmLibraryAtItsFirstCandidatePlaceBesideTheBundle) {
  const test::TempFolder folder;
  const std::string bundle = folder / std::string(kName) + ".plugin";
  writeBundle(bundle);
  runDirectly(bundle);
  EXPECT_EQ("jvm", test::readFile(folder / std::string(kName) + "/lib/server/libjvm.dylib"));
  EXPECT_EQ(folder / kName, fs::read_symlink(bundle + "/Contents/Home").string());
  EXPECT_EQ("plug-in", test::readFile(bundle + "/Contents/MacOS/JavaAppletPlugin"));
}

TEST(InitOSXJRE, LeavesTheSpawnHelpersMode) {
  const test::TempFolder folder;
  const std::string bundle = folder / std::string(kName) + ".plugin";
  writeBundle(bundle);
  runDirectly(bundle);
  EXPECT_EQ(0644u, test::modeOf(folder / std::string(kName) + "/lib/jspawnhelper"));
}

TEST(InitOSXJRE, ChangesNothingMateriallyOnASecondRun) {
  const test::TempFolder folder;
  const std::string bundle = folder / std::string(kName) + ".plugin";
  writeBundle(bundle);
  runDirectly(bundle);
  auto first = treeOf(folder.path());
  runDirectly(bundle);
  auto second = treeOf(folder.path());
  // ln -s makes its link inside an existing folder at the link's place.
  EXPECT_EQ(1u, second.erase(std::string("/") + kName + "/" + kName));
  EXPECT_EQ(first, second);
}

namespace {

struct PathCase {
  const char* label;
  const char* name;
};

// What a failure, and the test's name, show of it.
void PrintTo(const PathCase& value, std::ostream* out) {
  *out << value.label;
}

}  // namespace

namespace {
class InitOSXJREPath : public testing::TestWithParam<PathCase> {};
}  // namespace

TEST_P(InitOSXJREPath, IsTakenAsItIs) {
  const test::TempFolder folder;
  const std::string plain = folder / GetParam().name;
  const std::string bundle = plain + ".plugin";
  writeBundle(bundle);
  runDirectly(bundle);
  EXPECT_EQ("jvm", test::readFile(plain + "/lib/server/libjvm.dylib"));
  EXPECT_EQ(plain, fs::read_symlink(bundle + "/Contents/Home").string());
  EXPECT_EQ(plain + "/lib/libnpjp2.dylib",
            fs::read_symlink(bundle + "/Contents/MacOS/JavaAppletPlugin").string());
  EXPECT_EQ((Lines{"Contents"}), test::namesIn(bundle));
  EXPECT_EQ(2u, test::namesIn(folder.path()).size()) << "something else was made";
  char* java = nullptr;
  test::capture([&] { java = getJavaExecutable(bundle.c_str()); });
  EXPECT_EQ(bundle + "/Contents/Home/bin/java", java);
  EXPECT_EQ(0777u, test::modeOf(java));
  free(java);
}

INSTANTIATE_TEST_SUITE_P(
    With, InitOSXJREPath,
    testing::Values(PathCase{"Blanks", " with blanks "}, PathCase{"DoubleQuotes", "a \"b\" c"},
                    PathCase{"SingleQuote", "it's"}, PathCase{"Variable", "$HOME"},
                    PathCase{"Substitution", "$(touch made)"},
                    PathCase{"Backquotes", "`touch made`"}, PathCase{"Newline", "line\nbreak"},
                    PathCase{"Backslash", "back\\slash\\"}, PathCase{"Star", "*"},
                    PathCase{"Utf8", "J\xC3\xA4va \xE6\x97\xA5\xE6\x9C\xAC"},
                    PathCase{"InvalidUtf8", "\xFF\xFE"}, PathCase{"Semicolons", "; touch made;"},
                    PathCase{"LeadingHyphen", "-rf"}, PathCase{"Percent", "%s%n"}),
    [](const auto& info) { return info.param.label; });

TEST(InitOSXJRE, HandlesBlanksInAPathAsTheCommandsDo) {
  const test::TempFolder direct;
  const test::TempFolder shell;
  for (const test::TempFolder* folder : {&direct, &shell}) {
    writeBundle(*folder / "Application Support/Quorvane My App/Jre 1.plugin");
  }
  runDirectly(direct / "Application Support/Quorvane My App/Jre 1.plugin");
  runInShell(shell / "Application Support/Quorvane My App/Jre 1.plugin");
  EXPECT_EQ(treeOf(shell.path()), treeOf(direct.path()));
}

TEST(InitOSXJRE, GoesThroughAllStepsForABundleThatIsMissing) {
  const test::TempFolder folder;
  const std::string bundle = folder / "absent.plugin";
  EXPECT_TRUE(test::containsInOrder(
      test::logLinesOf([&] { initOSXJRE(bundle.c_str()); }),
      {"[LNS] Running " + commandsFor(bundle)[0], "[LNS] Running " + commandsFor(bundle)[6],
       "--- End: OSX JRE initialisation"}));
  EXPECT_EQ((Lines{"absent"}), test::namesIn(folder.path()));
}

TEST(InitOSXJRE, TouchesNothingForAPathThatIsTooLongOrTooShort) {
  const test::TempFolder folder;
  const std::string longPath = folder / std::string(4990 - folder.path().size(), 'x');
  runDirectly(longPath + ".plugin");
  runDirectly(folder / std::string(20000, 'x') + ".plugin");
  EXPECT_EQ((Lines{}), test::namesIn(folder.path()));
  const test::Result result = test::runInChild([&] {
    if (chdir(folder.path().c_str()) == 0) {
      initOSXJRE("short");
      initOSXJRE("");
    }
  });
  EXPECT_EQ(test::CODE_RETURNED, result.status);
  EXPECT_EQ((Lines{}), test::namesIn(folder.path()));
}

TEST(GetJavaExecutable, GivesTheToolsPathAndMakesItExecutableThroughTheLink) {
  const test::TempFolder folder;
  const std::string bundle = folder / std::string(kName) + ".plugin";
  writeBundle(bundle);
  runDirectly(bundle);
  char* path = nullptr;
  EXPECT_EQ("", test::capture([&] { path = getJavaExecutable(bundle.c_str()); }).out);
  EXPECT_EQ(bundle + "/Contents/Home/bin/java", path);
  free(path);
  EXPECT_EQ(0777u, test::modeOf(folder / std::string(kName) + "/bin/java"));
}

TEST(GetJavaExecutable, ReportsAMissingToolAndGivesThePathAllTheSame) {
  char* path = nullptr;
  const Lines lines = test::logLinesOf([&] { path = getJavaExecutable("/absent.plugin"); });
  EXPECT_EQ(
      (Lines{std::string(43, '*'), "Error setting java to executable!", std::string(43, '*')}),
      lines);
  EXPECT_STREQ("/absent.plugin/Contents/Home/bin/java", path);
  free(path);
}

TEST(GetJavaExecutable, GivesAnUnusablePathWhereItDoesNotFit) {
  const std::string bundle = "/" + std::string(4980, 'x');
  test::capture([&] {
    char* path = getJavaExecutable(bundle.c_str());
    EXPECT_EQ(0u, std::string(path).rfind("/dev/null/path-too-long", 0));
    free(path);
  });
}

TEST(GetUnpack200Executable, TracesItsSearchOnStandardOutputAndNotInTheLog) {
  const test::TempFolder folder;
  const std::string bundle = folder / std::string(kName) + ".plugin";
  writeBundle(bundle);
  char* path = nullptr;
  const test::Captured captured =
      test::capture([&] { path = getUnpack200Executable(bundle.c_str()); });
  const std::string bin = bundle + "/Contents/Home/bin";
  EXPECT_EQ("[Locating UP200] " + bundle + "\n[Locating UP200] " + bin +
                "\n[Locating UP200] Result is " + bin + "/unpack200\n",
            captured.out);
  EXPECT_EQ("", captured.err);
  EXPECT_EQ(bin + "/unpack200", path);
  free(path);
  EXPECT_EQ(0777u, test::modeOf(bin + "/unpack200"));
}

TEST(GetUnpack200Executable, ReportsAMissingToolAndGivesThePathAllTheSame) {
  char* path = nullptr;
  const Lines lines = test::logLinesOf([&] { path = getUnpack200Executable("/absent.plugin"); });
  EXPECT_TRUE(test::containsInOrder(
      lines, {std::string(43, '*'), "Error setting unpack200 to executable!", std::string(43, '*'),
              "[Locating UP200] Result is /absent.plugin/Contents/Home/bin/unpack200"}));
  EXPECT_STREQ("/absent.plugin/Contents/Home/bin/unpack200", path);
  free(path);
}
