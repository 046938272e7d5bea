#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/blackbox/pack/transcript.h"
#include "tests/support/background.h"
#include "tests/support/files.h"
#include "tests/support/master_folder.h"
#include "tests/support/temp_folder.h"
#include "tests/support/test_home.h"

// Runs the README's commands exactly as they are written there.

namespace {

// The shell lines of the README's five minutes: all "sh" blocks below that heading.
std::string fiveMinutes() {
  std::string script;
  bool isSection = false;
  bool isBlock = false;
  for (const std::string& line : test::linesOf(test::readFile(QUORVANE_SOURCE "/README.md"))) {
    if (line.rfind("## ", 0) == 0) {
      isSection = line == "## Five minutes: from a jar to an installed application";
    } else if (isSection && line == "```sh") {
      isBlock = true;
    } else if (isBlock && line == "```") {
      isBlock = false;
    } else if (isBlock) {
      script += line + "\n";
    }
  }
  return script;
}

class Readme : public testing::Test {
 protected:
  test::Transcript run(const std::string& script) {
    test::Command command;
    command.arguments = {"/bin/bash", "-euc", script};
    command.folder = folder_.path();
    command.environment = home_.environment();
    command.environment["DISPLAY"] = display_.name();
    command.environment["XDG_CACHE_HOME"] = folder_ / "cache";
    command.environment["PATH"] = std::string(QUORVANE_BIN ":") + getenv("PATH");
    // The JDK's tools end before their best code has paid off.
    command.environment["JAVA_TOOL_OPTIONS"] = "-XX:TieredStopAtLevel=1";
    command.seconds = 840;
    return test::transcriptOf(command);
  }

  const test::TempFolder folder_;
  const test::TestHome home_;
  const test::OwnDisplay display_;
};

TEST_F(Readme, FiveMinutesLeadFromAJarToAnInstalledApplication) {
  const std::string script = fiveMinutes();
  for (const char* command : {"quorvane-pack init", "quorvane-pack build", "quorvane-pack verify",
                              "quorvane-pack run", "/Contents/MacOS/"}) {
    ASSERT_NE(std::string::npos, script.find(command)) << command << " is not in\n" << script;
  }
  const test::Transcript result = run(script);
  ASSERT_TRUE(result.succeeded());
  result.mentions("quorvane.toml: the project file of \"Hello\"; next: ")
      .mentions("dist/Hello-1-linux-x86_64.tar.gz: all is well\n");
  // Once in the throw-away home, which is gone, then for real.
  result
      .mentions(
          "installed: ~/Library/Application Support/Quorvane-Hello/Quorvane-Hello-1-complete\n")
      .mentions("[ExtractArchive] Archive signature verified.")
      .mentions("Hello says: the window is up\n");
  const test::MasterFolder installed(home_, "Hello");
  for (const char* name : {"Quorvane-Hello-1-complete/hello.jar",
                           "Quorvane-Quorvane-2-complete/updater.jar", "logs"}) {
    EXPECT_TRUE(test::exists(installed / name)) << name;
  }
}

}  // namespace
