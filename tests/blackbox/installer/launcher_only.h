#ifndef QUORVANE_TESTS_BLACKBOX_INSTALLER_LAUNCHER_ONLY_H
#define QUORVANE_TESTS_BLACKBOX_INSTALLER_LAUNCHER_ONLY_H

#include <string>

#include "tests/installer/installer.h"

// What a run started, as version folders: the updater that the JVM, or the java that was spawned,
// reports, and the runtime that the log names. Empty where nothing was started.
struct Started {
  std::string updater;
  std::string runtime;
};

// Runs the installer, and waits for the java that it spawns where it is told to spawn one. The
// reports of earlier runs are gone then.
test::Result runAndAwait(const test::Installer& installer, test::Command command);
Started startedBy(const test::Installer& installer, const test::Result& result);

// An installer that carries nothing, so that it can only start what another one has installed.
class LauncherOnly {
 public:
  // It spawns where `installed` is told to.
  explicit LauncherOnly(const test::Installer& installed);

  // Starts what is installed. What the run changes there is undone.
  test::Result run();

 private:
  const test::Installer& installed_;
  test::Installer launcher_;
};

#endif
