#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "tests/blackbox/pack/small_project.h"
#include "tests/support/files.h"
#include "tests/support/test_keys.h"

namespace fs = std::filesystem;
using test::makeJar;

namespace {

// An existing key, which is cheaper than making one.
void writeKey(const test::TempFolder& folder) {
  test::writeFile(folder / "release.key", test::readFile(test::keyFile("first")), 0600);
}

std::string lineOf(const std::string& file, const std::string& start) {
  for (const std::string& line : test::linesOf(test::readFile(file))) {
    if (line.rfind(start, 0) == 0) {
      return line.substr(0, line.find("  #"));
    }
  }
  return "no line " + start;
}

test::Transcript init(const test::TempFolder& folder, std::vector<std::string> words) {
  words.insert(words.begin(), "init");
  return test::runPack(folder.path(), words);
}

TEST(PackInit, OfAJarTakesNameClassAndIdentifierFromIt) {
  const test::TempFolder folder;
  makeJar(folder.path(), "my-app-1.2.jar", "Main-Class: com.example.tool.Main\n");
  const test::Transcript result = init(folder, {"my-app-1.2.jar"});
  ASSERT_TRUE(result.succeeded());
  result.prints(
      "release.key: your new signing key; keep it safe and do not publish it\n"
      "release.pub: its public half\n"
      "quorvane.toml: the project file of \"My App\"; next: quorvane-pack build\n");
  const std::string file = folder / "quorvane.toml";
  EXPECT_EQ("name = \"My App\"", lineOf(file, "name"));
  EXPECT_EQ("identifier = \"com.example.tool\"", lineOf(file, "identifier"));
  EXPECT_EQ("jar = \"my-app-1.2.jar\"", lineOf(file, "jar"));
  EXPECT_EQ("main_class = \"com.example.tool.Main\"", lineOf(file, "main_class"));
  EXPECT_EQ("key = \"release.key\"", lineOf(file, "key"));
  EXPECT_EQ(0600u, test::modeOf(folder / "release.key"));
}

TEST(PackInit, WritesTheKeysPublicHalfBesideIt) {
  const test::TempFolder folder;
  makeJar(folder.path(), "a.jar", "Main-Class: Main\n");
  ASSERT_TRUE(init(folder, {"a.jar"}).succeeded());
  EXPECT_EQ(test::runPack(folder.path(), {"key", "show", "release.key"}).out,
            test::readFile(folder / "release.pub"));
}

TEST(PackInit, OfAFolderListsItsJarsAndTheOneMainClass) {
  const test::TempFolder folder;
  writeKey(folder);
  makeJar(folder.path(), "app/main.jar", "Main-Class: org.example.Main\nClass-Path: lib/b.jar\n");
  makeJar(folder.path(), "app/lib/b.jar", "X: y\n");
  ASSERT_TRUE(init(folder, {"app/"}).succeeded());
  const std::string file = folder / "quorvane.toml";
  EXPECT_EQ("folder = \"app\"", lineOf(file, "folder"));
  EXPECT_EQ("class_path = [\"lib/b.jar\", \"main.jar\"]", lineOf(file, "class_path"));
  EXPECT_EQ("main_class = \"org.example.Main\"", lineOf(file, "main_class"));
}

TEST(PackInit, ReplacesNeitherProjectNorKeyUnasked) {
  const test::TempFolder folder;
  makeJar(folder.path(), "a.jar", "Main-Class: Main\n");
  test::writeFile(folder / "quorvane.toml", "mine");
  init(folder, {"a.jar"})
      .fails("quorvane.toml exists; name another file with --project, or replace it with --force");
  EXPECT_EQ("mine", test::readFile(folder / "quorvane.toml"));
  EXPECT_FALSE(test::exists(folder / "release.key"));
  test::writeFile(folder / "release.key", "my key");
  init(folder, {"a.jar", "--force"}).ends(0);
  EXPECT_EQ("my key", test::readFile(folder / "release.key"));
  EXPECT_EQ("name = \"A\"", lineOf(folder / "quorvane.toml", "name"));
}

TEST(PackInit, TakesAClassAndANameFromTheCommandLine) {
  const test::TempFolder folder;
  writeKey(folder);
  makeJar(folder.path(), "a.jar", "X: y\n");
  ASSERT_TRUE(
      init(folder, {"a.jar", "--main-class", "Start", "--name", "G\xc3\xbcte \"1\""}).succeeded());
  EXPECT_EQ("name = \"G\xc3\xbcte \\\"1\\\"\"", lineOf(folder / "quorvane.toml", "name"));
  EXPECT_EQ("identifier = \"org.example.gte1\"", lineOf(folder / "quorvane.toml", "identifier"));
}

struct WrongInit {
  const char* name;
  const char* words;
  const char* message;
};

void PrintTo(const WrongInit& init, std::ostream* out) {
  *out << init.name;
}

class PackInitOf : public testing::TestWithParam<WrongInit> {};

const WrongInit kWrongInits[] = {
    {"NothingThere", "none.jar", "none.jar cannot be read: No such file or directory"},
    {"NoMainClass", "plain.jar",
     "plain.jar has no main class: no manifest has a Main-Class; pass --main-class "
     "org.example.Main"},
    {"AJarThatAsksForOthers", "asking.jar",
     "the manifest of asking.jar refers to lib/b.jar; name the folder that contains both"},
    {"TwoMainClasses", "two",
     "two/a.jar and two/b.jar both name a main class; choose one with --main-class"},
    {"AFolderWithoutJars", "empty", "empty contains no jars; put the application's jars into it"},
    {"ItsOwnFolder", ".",
     "the project file quorvane.toml and its key would be inside ., which is packed; work in the "
     "parent folder, or choose another place with --project"},
};

TEST_P(PackInitOf, IsRefusedWithWhatToDo) {
  const test::TempFolder folder;
  makeJar(folder.path(), "plain.jar", "X: y\n");
  makeJar(folder.path(), "asking.jar", "Main-Class: Main\nClass-Path: lib/a.jar lib/b.jar\n");
  makeJar(folder.path(), "lib/b.jar", "X: y\n");
  makeJar(folder.path(), "two/a.jar", "Main-Class: A\n");
  makeJar(folder.path(), "two/b.jar", "Main-Class: B\n");
  fs::create_directories(folder / "empty");
  init(folder, {GetParam().words})
      .fails(GetParam().message)
      .leavesNo("quorvane.toml")
      .leavesNo("release.key");
}

INSTANTIATE_TEST_SUITE_P(All, PackInitOf, testing::ValuesIn(kWrongInits),
                         [](const auto& info) { return std::string(info.param.name); });

TEST(PackInit, OfAJarWhoseManifestNamesMissingJarsWarnsAndTakesIt) {
  const test::TempFolder folder;
  writeKey(folder);
  makeJar(folder.path(), "a.jar", "Main-Class: Main\nClass-Path: lib/b.jar my%20c.jar\n");
  init(folder, {"a.jar"})
      .ends(0)
      .reports(
          "quorvane-pack: warning: the manifest of a.jar has lib/b.jar in its class path, which is "
          "missing\n"
          "quorvane-pack: warning: the manifest of a.jar has my%20c.jar in its class path, which "
          "is missing\n");
  EXPECT_EQ("jar = \"a.jar\"", lineOf(folder / "quorvane.toml", "jar"));
  test::writeFile(folder / "my c.jar", "anything");
  init(folder, {"a.jar", "--force"})
      .fails("the manifest of a.jar refers to my%20c.jar; name the folder that contains both");
}

TEST(PackInit, OfAJarWhoseNameHasNoWordAsksForAName) {
  const test::TempFolder folder;
  writeKey(folder);
  makeJar(folder.path(), "_.jar", "Main-Class: Main\n");
  init(folder, {"_.jar"}).fails("cannot derive an application name from _.jar; pass --name");
  init(folder, {"_.jar", "--name", "One"}).ends(0);
}

TEST(PackInit, OfATextInAnotherEncodingSaysSo) {
  const test::TempFolder folder;
  makeJar(folder.path(), "a.jar", "Main-Class: Main\n");
  init(folder, {"a.jar", "--name", "Gr\xfc\xdf"})
      .fails("the text Gr\xfc\xdf is not UTF-8, which a project file requires; rename it")
      .leavesNo("quorvane.toml")
      .leavesNo("release.key");
}

TEST(PackInit, WithoutANameForThePrivateKeyEndsWith2AndMakesNothing) {
  for (const char* key : {"release.pub", "-"}) {
    const test::TempFolder folder;
    makeJar(folder.path(), "a.jar", "Main-Class: Main\n");
    const std::vector<std::string> before = test::namesIn(folder.path());
    init(folder, {"a.jar", "--key", key})
        .isMisused("--key " + std::string(key) +
                   " is not a name for a private key file; use one like release.key\n");
    EXPECT_EQ(before, test::namesIn(folder.path()));
  }
}

TEST(PackInit, DoesNotReplaceAPublicKeyThatStands) {
  const test::TempFolder folder;
  makeJar(folder.path(), "a.jar", "Main-Class: Main\n");
  test::writeFile(folder / "release.pub", "another's");
  init(folder, {"a.jar"})
      .fails(
          "release.pub already exists, but the public half of release.key belongs there; move it "
          "away, or name another key with --key");
  EXPECT_EQ("another's", test::readFile(folder / "release.pub"));
  EXPECT_FALSE(test::exists(folder / "release.key"));
  EXPECT_FALSE(test::exists(folder / "quorvane.toml"));
}

TEST(PackInit, OfANameThatBuildRefusesSaysWhy) {
  const std::string long70(70, 'A');
  const std::string why =
      "\"; folders are named after it, so it must have at most 60 bytes, no '/', '-', ':', '\\' or "
      "control character, no '.' or blank at its start and no blank at its end\n";
  const test::TempFolder folder;
  writeKey(folder);
  makeJar(folder.path(), "a.jar", "Main-Class: Main\n");
  const auto errorOf = [&](const std::vector<std::string>& words) {
    const test::Transcript result = init(folder, words);
    result.ends(1).leavesNo("quorvane.toml");
    return result.err;
  };
  EXPECT_EQ("quorvane-pack: --name is \"a-b" + why, errorOf({"a.jar", "--name", "a-b"}));
  EXPECT_EQ("quorvane-pack: --name is \"" + long70 + why, errorOf({"a.jar", "--name", long70}));
  EXPECT_EQ(
      "quorvane-pack: --name is \"Quorvane\", which names another component's folders; choose "
      "another one\n",
      errorOf({"a.jar", "--name", "Quorvane"}));
  fs::rename(folder / "a.jar", folder / (long70 + ".jar"));
  EXPECT_EQ("quorvane-pack: the name derived from " + long70 +
                ".jar (pass --name for another) is \"" + long70 + why,
            errorOf({long70 + ".jar"}));
}

TEST(PackInit, OfADamagedJarNamesIt) {
  const test::TempFolder folder;
  test::writeFile(folder / "a.jar", "no jar");
  init(folder, {"a.jar"}).fails("a.jar is not a jar, or is damaged; build it or copy it again");
}

TEST(PackInit, WithoutAJdkSaysHowToGetOne) {
  const test::TempFolder folder;
  test::writeFile(folder / "a.jar", "no jar");
  test::Command command = test::packCommand(folder.path(), {"init", "a.jar"});
  command.environment = {{"PATH", folder.path()}};
  command.unset = {"JAVA_HOME"};
  test::transcriptOf(command).fails(
      "no JDK found: JAVA_HOME is not set and PATH has no jlink; install a JDK (on Debian the "
      "package openjdk-17-jdk), or name its folder with --jdk");
}

}  // namespace
