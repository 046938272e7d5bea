#ifndef QUORVANE_TESTS_BLACKBOX_INSTALLER_CURRENT_INSTALLATION_H
#define QUORVANE_TESTS_BLACKBOX_INSTALLER_CURRENT_INSTALLATION_H

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/installer/installer.h"
#include "tests/support/capture.h"
#include "tests/support/files.h"

// What the installer tests ask of a run's output.
inline bool logs(const test::Result& result, const std::string& line) {
  return test::containsInOrder(test::logLinesOf(result.out), {line});
}

inline bool mentions(const test::Result& result, const std::string& text) {
  return result.out.find(text) != std::string::npos;
}

// An installer that finds everything current, so that it only starts up and launches.
class CurrentInstallation : public testing::Test {
 protected:
  CurrentInstallation() { installer_.installCarried(); }

  test::Result run(const std::vector<std::string>& words = {}) {
    installer_.write();
    return installer_.run(words);
  }

  // What the launched updater was told about `key`.
  std::string property(const std::string& key) {
    for (const std::string& name :
         test::namesIn(installer_.master("Quorvane-Quorvane-5-complete"))) {
      if (name.rfind("QVLaunchProperties-", 0) == 0) {
        const std::string bytes =
            test::readFile(installer_.master("Quorvane-Quorvane-5-complete/" + name)) + '\0';
        const size_t at = bytes.find(test::field(key));
        if (at != std::string::npos) {
          return bytes.c_str() + at + key.size() + 1;
        }
      }
    }
    return "(none)";
  }

  test::Installer installer_;
};

#endif
