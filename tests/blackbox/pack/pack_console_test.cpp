#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "tests/blackbox/pack/small_project.h"
#include "tests/support/files.h"
#include "tests/support/master_folder.h"
#include "tests/support/test_home.h"

// The output of installers whose application writes to a console. The product's own executables
// install here; the launch fails, because the runtime holds no JVM.

namespace fs = std::filesystem;

namespace {

class PackConsole : public testing::Test {
 protected:
  PackConsole() {
    for (const char* name : {"launcher", "extractor", "lzma64"}) {
      fs::copy_file(std::string(QUORVANE_BIN "/") + name, project_ / "bin/" + name,
                    fs::copy_options::overwrite_existing);
    }
    test::writeFile(project_ / "runtime/bin/java", "#!/bin/sh\n", 0755);
  }

  void build() {
    project_.build().ends(0);
    fs::create_directories(home_.applicationSupport());
  }

  test::Transcript install() {
    build();
    return start();
  }

  test::Transcript start() {
    test::Command command;
    command.arguments = {project_ / test::bundleIn("dist", "offline") + "/Contents/MacOS/Small App",
                         "-silent"};
    command.environment = home_.environment();
    return test::transcriptOf(command);
  }

  // The bytes of the one log file.
  std::string log() {
    const std::string folder = installed_ / "logs";
    const std::vector<std::string> names = test::namesIn(folder);
    EXPECT_EQ(1u, names.size());
    return names.empty() ? "" : test::readFile(folder + "/" + names[0]);
  }

  test::SmallProject project_;
  const test::TestHome home_;
  const test::MasterFolder installed_{home_, "Small App"};
};

TEST_F(PackConsole, LeavesStandardOutputToTheApplication) {
  project_.replace("icon = \"small.icns\"", "icon = \"small.icns\"\nconsole = true");
  install().prints("").reportsNo("[Extractor]");
  const std::string lines = log();
  EXPECT_NE(std::string::npos, lines.find("[Extractor] The absolute wrapper path is ")) << lines;
  EXPECT_NE(std::string::npos, lines.find("Dynamic Param 2: console=[true]")) << lines;
  EXPECT_NE(std::string::npos, lines.find("[Extractor] JRE folder is ")) << lines;
}

TEST_F(PackConsole, OfAFailureBeforeTheLogFileShowsItOnStandardError) {
  project_.replace("icon = \"small.icns\"", "icon = \"small.icns\"\nconsole = true");
  build();
  fs::remove(project_ / test::bundleIn("dist", "offline") + "/Contents/Resources/Tail");
  start().ends(1).prints("").reportsAlso("Failed to extract wrapper tail");
}

// A file is where the folder of logs should be, and the last archive is cut.
TEST_F(PackConsole, OfAFailureWithoutALogFileShowsItOnStandardError) {
  project_.replace("icon = \"small.icns\"", "icon = \"small.icns\"\nconsole = true");
  build();
  installed_.addFile("logs");
  const std::string tail =
      project_ / test::bundleIn("dist", "offline") + "/Contents/Resources/Tail";
  const std::string bytes = test::readFile(tail);
  test::writeFile(tail, bytes.substr(0, bytes.size() - 100));
  start().ends(1).prints("").reportsAlso("[Extractor] The absolute wrapper path is ");
}

// The log file is closed before the program is started.
TEST_F(PackConsole, OfALaunchThatFailsInBothWaysShowsTheErrorOnStandardError) {
  project_.replace("icon = \"small.icns\"", "icon = \"small.icns\"\nconsole = true");
  test::writeFile(project_ / "runtime/bin/java", "#!/nonexistent\n", 0755);
  const test::Result result = install();
  EXPECT_EQ("", result.out);
  EXPECT_NE(std::string::npos, result.err.find(" Launch Error 2.\n")) << result.err;
  EXPECT_EQ(std::string::npos, result.err.find("[Extractor] JRE folder is ")) << result.err;
  EXPECT_NE(std::string::npos, log().find("[Extractor] JRE folder is "));
}

TEST_F(PackConsole, IsNotAssumed) {
  install().mentions("[Extractor] JRE folder is ");
}

TEST_F(PackConsole, IsAKeyAndNoProperty) {
  project_.replace("[signing]", "[installer.properties]\nconsole = \"true\"\n\n[signing]");
  project_.build().fails(
      "quorvane.toml: [installer.properties] has console; set it with 'console' in [application]");
}

}  // namespace
