#ifndef QUORVANE_TESTS_BLACKBOX_INSTALLER_STARTS_H
#define QUORVANE_TESTS_BLACKBOX_INSTALLER_STARTS_H

#include <map>
#include <string>

#include "tests/installer/installer.h"

// What may never be broken, whatever a run met.

// Makes the installer carry updater 6 and application 4.
void carryUpdate(test::Installer* installer);

// Every folder of the installer's master folder that counts as complete holds what it needs to
// start, but for the one named `damaged` as long as its launch file is empty.
void expectVersionFoldersStart(const test::Installer& installer, const std::string& damaged = "");

// Every runtime's bundle there has the link that makes the plug-in library its executable.
void expectBundlesHaveExecutables(const test::Installer& installer);

// The environment in which the installer's wall clock jumps (see tests/fakes/jumping_clock.cpp).
std::map<std::string, std::string> withClock(const test::Installer& installer,
                                             const std::string& startAndStep);

#endif
