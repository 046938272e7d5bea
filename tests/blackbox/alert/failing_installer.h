#ifndef QUORVANE_TESTS_BLACKBOX_ALERT_FAILING_INSTALLER_H
#define QUORVANE_TESTS_BLACKBOX_ALERT_FAILING_INSTALLER_H

#include <string>
#include <vector>

#include "tests/installer/installer.h"
#include "tests/support/alert_scene.h"

// An installer that shows alerts to the test.
class InstallerAlert : public test::AlertScene {
 protected:
  InstallerAlert();

  // Writes the bundle with the recorder in its executable.
  void write();

  // Writes it so that the application's archive is cut short.
  void writeDamaged();

  // The command with the words, on the scene's screen.
  test::Command command(const std::vector<std::string>& words = {}) const;

  // The log file that the installer has written; there must be one.
  std::string logPath() const;

  test::Installer installer_;
};

#endif
