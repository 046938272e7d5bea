#ifndef QUORVANE_TESTS_BLACKBOX_INSTALLER_ONLINE_H
#define QUORVANE_TESTS_BLACKBOX_INSTALLER_ONLINE_H

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "tests/blackbox/installer/current_installation.h"
#include "tests/support/background.h"

// What a system's java does when the compatibility class is run and when it is asked its version.
inline std::string javaScript(int probeStatus, int versionStatus = 0) {
  return "#!/bin/sh\ncase \"$*\" in *updater.Probe*) exit " + std::to_string(probeStatus) +
         ";; *-version*) exit " + std::to_string(versionStatus) + ";; esac\nexit 0\n";
}

// A local update site in a folder.
class UpdateSite {
 public:
  // Serves what was and will be published; returns the URL.
  std::string serve() {
    return serveWith(
        {"-u", "-m", "http.server", "--bind", "127.0.0.1", "0", "--directory", folder_.path()});
  }

  // The same, but before an archive is sent the shell command `plant` is run in each temporary
  // folder of `masterFolder`.
  std::string servePlanting(const std::string& masterFolder, const std::string& plant) {
    return serveWith(
        {QUORVANE_SOURCE "/tests/fakes/planting_site.py", folder_.path(), masterFolder, plant});
  }

  void stop() { server_.reset(); }

  void publishVersion(const std::string& text) {
    test::writeFile(folder_ / "Quorvane-Mac64JRE-version.txt", text);
  }

  void publishArchive(const std::string& bytes, const std::string& version = "1500") {
    test::writeFile(folder_ / ("Quorvane-Mac64JRE-" + version + "-archive.p2.l2"), bytes);
  }

  // A runtime of version 1500.
  void publishGoodSite() {
    publishVersion("1500\n");
    publishArchive(test::compressed(test::Installer::runtimeRecords()));
  }

 private:
  std::string serveWith(const std::vector<std::string>& words) {
    test::Command command;
    command.arguments = {"/usr/bin/env", "python3"};
    command.arguments.insert(command.arguments.end(), words.begin(), words.end());
    server_ = std::make_unique<test::Background>(command);
    const std::string line = server_->waitForLine("Serving HTTP on 127.0.0.1 port ");
    return "http://127.0.0.1:" + line.substr(0, line.find(' '));
  }

  test::TempFolder folder_;
  std::unique_ptr<test::Background> server_;
};

#endif
