#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "tests/blackbox/pack/small_project.h"
#include "tests/support/files.h"

// The runtime that 'quorvane-pack build' makes or takes.

namespace fs = std::filesystem;

namespace {

// A JDK of scripts, which keep what they were asked for.
void makeJdk(const std::string& folder) {
  test::writeFile(folder + "/bin/jlink",
                  "#!/bin/sh\n"
                  "printf '%s\\n' \"$@\" > \"${0%/*}/asked\"\n"
                  "while [ \"$1\" != --output ]; do shift; done\n"
                  "mkdir -p \"$2/bin\" && echo java > \"$2/bin/java\"\n"
                  "echo 'JAVA_VERSION=\"21.0.4\"' > \"$2/release\"\n",
                  0755);
}

TEST(PackRuntime, MakesTheRuntimeOfTheModulesOfAnotherSystem) {
  test::SmallProject project;
  makeJdk(project / "jdk");
  fs::create_directories(project / "mac-jmods");
  project.replace("folder = \"runtime\"",
                  "jdk = \"jdk\"\njmods = \"mac-jmods\"\nmodules = [\"java.base\", \"a.b\"]");
  ASSERT_TRUE(project.build().succeeded());
  const std::vector<std::string> asked = test::linesOf(test::readFile(project / "jdk/bin/asked"));
  EXPECT_TRUE(test::containsInOrder(asked, {"--module-path", project / "mac-jmods"}));
  EXPECT_TRUE(test::containsInOrder(asked, {"--add-modules", "java.base,a.b"}));
  EXPECT_TRUE(test::exists(project / "dist/site/Quorvane-Mac64JRE-210004-archive.p2.l2"));
}

TEST(PackRuntime, ShowsWhatAProgramOfTheJdkSaidWhenItFails) {
  test::SmallProject project;
  test::writeFile(project / "jdk/bin/jlink", "#!/bin/sh\necho 'Error: no a.b' >&2\nexit 1\n", 0755);
  project.replace("folder = \"runtime\"", "jdk = \"jdk\"\nmodules = [\"a.b\"]");
  project.build().fails(project / "jdk/bin/jlink failed:\nError: no a.b\n");
  project.replace("modules = [\"a.b\"]", "");
  project.build().fails(project / "jdk/bin/jdeps" +
                        " is missing; install a JDK (on Debian the package openjdk-17-jdk), or "
                        "name its folder with --jdk");
}

TEST(PackRuntime, NamesADamagedJarAndAsksForModulesWhenNoneAreFound) {
  test::SmallProject project;
  makeJdk(project / "jdk");
  test::writeFile(project / "jdk/bin/jdeps", "#!/bin/sh\n", 0755);
  project.replace("folder = \"runtime\"", "jdk = \"jdk\"");
  const std::string sound = test::readFile(project / "app/lib/other.jar");
  test::writeFile(project / "app/lib/other.jar", "a library");
  project.build().fails("app/lib/other.jar is not a jar, or is damaged; build it or copy it again");
  test::writeFile(project / "app/lib/other.jar", sound);
  project.build().fails(
      "jdeps finds no modules for app/lib/other.jar app/main.jar; list them as 'modules' in "
      "[runtime]");
}

TEST(PackRuntime, PacksAMacosRuntimeBundle) {
  test::SmallProject project;
  fs::create_directories(project / "mac/Contents");
  fs::rename(project / "runtime", project / "mac/Contents/Home");
  project.replace("folder = \"runtime\"", "folder = \"mac\"");
  ASSERT_TRUE(project.build().succeeded());
  project.pack({"archive", "list", "dist/site/Quorvane-Mac64JRE-170015-archive.p2.l2"})
      .mentions(" Contents/Home/bin/java\n");
}

}  // namespace
