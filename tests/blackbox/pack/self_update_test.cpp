#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "tests/blackbox/pack/small_project.h"
#include "tests/support/background.h"
#include "tests/support/files.h"
#include "tests/support/master_folder.h"
#include "tests/support/product_system.h"
#include "tests/support/test_home.h"
#include "tests/support/test_keys.h"

// Installed applications that update themselves: real installers, with a real Java runtime, made by
// the packager, and the site that it makes, on a web server of this machine.

namespace fs = std::filesystem;
using Texts = std::vector<std::string>;

namespace {

const char kInstaller[] = "Sample.app/Contents/MacOS/Sample";

class SelfUpdate : public testing::Test {
 protected:
  SelfUpdate() {
    fs::create_directories(folder_ / "site");
    test::writeFile(folder_ / "runtime/bin/java", "stands in for a java", 0755);
    test::writeFile(folder_ / "runtime/release", "JAVA_VERSION=\"17.0.15\"\n");
    test::writeFile(folder_ / "release.key", test::readFile(test::keyFile("first")), 0600);
    fs::copy_file(QUORVANE_EXAMPLES "/app/app.jar", folder_ / "app.jar");
    test::Command command;
    command.arguments = {"/usr/bin/python3", "-u",        "-m",          "http.server",   "0",
                         "--bind",           "127.0.0.1", "--directory", folder_ / "site"};
    server_ = std::make_unique<test::Background>(command);
    const std::string rest = server_->waitForLine("Serving HTTP on 127.0.0.1 port ");
    url_ = "http://127.0.0.1:" + rest.substr(0, rest.find(' ')) + "/";
  }

  bool isInstalled(int version) const {
    return test::exists(installed_.component("Sample", std::to_string(version)));
  }

  // Makes installers and a site of this version of the application. Packing a real runtime takes
  // long: where only the application is to be published, something stands in for it.
  void build(int version, const std::string& mainClass = "org.example.app.SampleApp",
             const std::string& key = "release.key") const {
    const std::string runtime = version == 1 ? QUORVANE_TEST_RUNTIME : folder_ / "runtime";
    test::writeFile(
        folder_ / "quorvane.toml",
        "[application]\nname = \"Sample\"\nversion = " + std::to_string(version) +
            "\nidentifier = \"org.example.sample\"\njar = \"app.jar\"\nmain_class = \"" +
            mainClass + "\"\narguments = [\"--console\"]\n[runtime]\nfolder = \"" + runtime +
            "\"\n[updates]\ninterval = 0\n" + "[installer]\nupdate_url = \"" + url_ +
            "\"\n[signing]\nkey = \"" + key + "\"\n");
    // All cases pack the same runtime.
    constexpr double kSeconds = 800;
    ASSERT_TRUE(test::runPack(folder_.path(), {"build", "--bundles", "--executables", QUORVANE_BIN},
                              {{"XDG_CACHE_HOME", QUORVANE_BIN "/../test-cache"}}, kSeconds)
                    .succeeded());
  }

  // Archive first, the version text last.
  void publish(int version) const {
    const std::string name = "Quorvane-Sample-";
    const auto options = fs::copy_options::recursive | fs::copy_options::overwrite_existing;
    if (version == 1) {
      fs::copy(folder_ / "dist/site", folder_ / "site", options);
      return;
    }
    for (const std::string& rest :
         {std::to_string(version) + "-archive.p2.l2", std::string("version.txt")}) {
      fs::copy(folder_ / "dist/site/" + name + rest, folder_ / "site/" + name + rest, options);
    }
  }

  // Keeps the online installer of what was built last as the one that the user has.
  void keepInstaller() const {
    fs::create_directory(folder_ / "user");
    fs::copy(folder_ / test::bundleIn("dist", "online", "Sample"), folder_ / "user/Sample.app",
             fs::copy_options::recursive);
  }

  // Starts the installer, and waits for what it leaves to be done.
  test::Transcript start(const std::function<bool()>& until = {}) const {
    test::Command command;
    command.arguments = {folder_ / "user/" + kInstaller};
    command.environment = home_.environment();
    command.environment["DISPLAY"] = display_.name();
    command.seconds = 120;
    command.until = until;
    return test::transcriptOf(command);
  }

  void expectStart(int version, const std::function<bool()>& until = {}) const {
    const test::Transcript result = start(until);
    result.ends(0);
    EXPECT_FALSE(result.timedOut);
    EXPECT_NE(std::string::npos,
              result.out.find("Sample version " + std::to_string(version) + " on Java 17\n"))
        << result.out << result.err << logs();
  }

  std::string logs() const {
    std::string all;
    for (const auto& entry : fs::directory_iterator(installed_ / "logs")) {
      if (entry.path().filename().string().rfind("Updater-", 0) == 0) {
        all += test::readFile(entry.path());
      }
    }
    return all;
  }

  bool isLogged(const std::string& words) const { return logs().find(words) != std::string::npos; }

  const test::TempFolder folder_;
  const test::TestHome home_;
  const test::MasterFolder installed_{home_, "Sample"};
  const test::OwnDisplay display_;
  std::unique_ptr<test::Background> server_;
  std::string url_;
};

TEST_F(SelfUpdate, AnOnlineInstallerFetchesTheApplicationAndUpdatesItWhileItRuns) {
  build(1);
  publish(1);
  keepInstaller();
  start()
      .ends(0)
      .mentions("Sample version 1 on Java 17\n")
      .mentions("Installing version 1 of Sample");

  build(2);
  publish(2);
  expectStart(1, [&] { return isInstalled(2) && isLogged("Installed version 2 of Sample"); });
  expectStart(2);

  server_.reset();
  expectStart(2, [&] { return isLogged("The site cannot be asked"); });
}

TEST_F(SelfUpdate, AVersionThatDoesNotStartIsLeftAndTheNextOneIsTaken) {
  build(1);
  publish(1);
  keepInstaller();
  expectStart(1);
  // The packager finds this class, and Java cannot load it.
  test::writeFile(folder_ / "org/example/app/Damaged.class", "no class");
  test::runShell(folder_.path(), "jar --update --file app.jar org").ends(0);
  build(2, "org.example.app.Damaged");
  publish(2);
  expectStart(1, [&] { return isLogged("Installed version 2 of Sample"); });
  start().ends(1);
  start().ends(1);
  EXPECT_TRUE(isLogged("Version 2 of Sample failed to start twice in a row"));
  build(3);
  publish(3);
  expectStart(1, [&] { return isLogged("Installed version 3 of Sample"); });
  expectStart(3);
}

TEST_F(SelfUpdate, WhatAnotherKeySignedIsNotTaken) {
  build(1);
  publish(1);
  keepInstaller();
  expectStart(1);
  test::writeFile(folder_ / "other.key", test::readFile(test::keyFile("second")), 0600);
  build(2, "org.example.app.SampleApp", "other.key");
  publish(2);
  expectStart(1, [&] { return isLogged("refused version 2 of Sample with status 4"); });
  expectStart(1);
  EXPECT_FALSE(isInstalled(2));
}

}  // namespace
