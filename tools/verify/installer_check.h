#ifndef QUORVANE_TOOLS_VERIFY_INSTALLER_CHECK_H
#define QUORVANE_TOOLS_VERIFY_INSTALLER_CHECK_H

#include <functional>
#include <string>
#include <vector>

namespace tools {

// The result of checking a bundle.
struct BundleReport {
  std::vector<std::string> facts;     // what is there, a line each
  std::vector<std::string> problems;  // what is wrong with it, a line each
};

// Checks the launcher bundle or installer `bundle` as the product does when it runs: its
// executable, Tail record, params file, every archive with its signature, the launch files, and the
// names that become folders. `begin` is called with a text when a step begins. With an update site
// (the folder `site`, unless empty) also checks its files for the installer's application, updater
// and runtime, as --install does. Nothing is executed or installed.
BundleReport checkBundle(const std::string& bundle, const std::string& site = "",
                         const std::function<void(const std::string&)>& begin = nullptr);

}  // namespace tools

#endif
