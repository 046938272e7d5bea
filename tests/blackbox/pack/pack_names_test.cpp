#include <gtest/gtest.h>

#include <string>

#include "tests/blackbox/pack/small_project.h"
#include "tests/support/files.h"

// Names of files and components that would not come through an installation.

namespace {

void expectRefused(const test::SmallProject& project, const std::string& message,
                   test::Place place = test::Place::here()) {
  project.build().fails(message, place).leavesNo("dist/site", place);
}

TEST(PackNames, ThatTheInstallerWritesItselfAreRefusedInTheApplication) {
  for (const char* name : {"version.txt", "Version.TXT", "application.p2", "application.p2.l2"}) {
    const test::SmallProject project;
    test::writeFile(project / "app" + "/" + name, "the user's");
    const test::Transcript result = project.build();
    result.ends(1);
    EXPECT_EQ(0u, result.err.find("quorvane-pack: app/" + std::string(name) +
                                  " has a name that the installer uses itself: "))
        << result.err;
  }
  const test::SmallProject project;
  test::writeFile(project / "app/version.txt", "the user's");
  expectRefused(project,
                "app/version.txt has a name that the installer uses itself: the version is written "
                "there; rename the file, or move it into a folder");
}

TEST(PackNames, ThatTheInstallerWritesItselfAreRefusedInTheUpdater) {
  for (const char* name :
       {"version.txt", "lzma64", "nativesplash.png", "updater.p2", "updater.p2.l2"}) {
    const test::SmallProject project;
    test::writeFile(project / "updater" + "/" + name, "the user's");
    const test::Transcript result = project.build();
    result.ends(1);
    EXPECT_EQ(0u, result.err.find("quorvane-pack: updater/" + std::string(name) +
                                  " has a name that the installer uses itself: "))
        << result.err;
  }
}

TEST(PackNames, ThatTheInstallerWritesItselfAreTakenInFolders) {
  const test::SmallProject project;
  test::writeFile(project / "app/lib/version.txt", "the user's");
  test::writeFile(project / "app/lzma64", "the user's");
  test::writeFile(project / "updater/lib/lzma64", "the user's");
  project.build().ends(0);
}

TEST(PackNames, ThatDifferByCaseAloneAreRefusedForFiles) {
  const test::SmallProject project;
  test::writeFile(project / "app/lib/README", "one");
  test::writeFile(project / "app/lib/readme", "another");
  expectRefused(project,
                "the paths lib/README and lib/readme differ only in case, which most macOS volumes "
                "ignore; rename one");
}

TEST(PackNames, ThatDifferByCaseAloneAreRefusedForComponents) {
  test::SmallProject project;
  const std::string text = project.text;
  project.replace("\"Small App\"", "\"quorvane\"");
  expectRefused(project,
                "quorvane.toml: [application] name is \"quorvane\", which names another "
                "component's folders; choose another one");
  project.text = text;
  project.replace("[runtime]", "[runtime]\nname = \"SMALL app\"");
  expectRefused(project,
                "quorvane.toml: [application] name is \"Small App\", which names another "
                "component's folders; choose another one");
  project.text = text;
  project.replace("[runtime]", "[runtime]\nname = \"quorvane\"");
  expectRefused(project,
                "quorvane.toml: [runtime] name is \"quorvane\", which names the updater's "
                "folders; choose another one");
}

TEST(PackNames, InTheClassPathMustBePacked) {
  for (const char* entry : {"none.jar", "../release.key", "/etc/hostname", "", ".", "..",
                            "./main.jar", "lib/", "lib/../main.jar", "Main.jar"}) {
    test::SmallProject project;
    project.replace("folder = \"app\"",
                    "folder = \"app\"\nclass_path = [\"" + std::string(entry) + "\"]");
    expectRefused(project, "quorvane.toml: [application] class_path has \"" + std::string(entry) +
                               "\", which app does not contain; write entries as paths relative to "
                               "it, for example lib/tool.jar");
  }
}

TEST(PackNames, InTheClassPathMayBeFilesAndFolders) {
  test::SmallProject project;
  project.replace("folder = \"app\"", "folder = \"app\"\nclass_path = [\"lib\", \"main.jar\"]");
  project.build().ends(0);
}

TEST(PackNames, InTheClassPathMayHoldNoColon) {
  const char kMessage[] =
      "quorvane.toml: [application] cannot have a:b.jar in the class path, where ':' separates "
      "entries; rename it";
  test::SmallProject project;
  test::writeFile(project / "app/a:b.jar", "a jar");
  expectRefused(project, kMessage);
  project.replace("folder = \"app\"", "jar = \"app/a:b.jar\"");
  expectRefused(project, kMessage);
}

}  // namespace
