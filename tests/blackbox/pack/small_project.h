#ifndef QUORVANE_TESTS_BLACKBOX_PACK_SMALL_PROJECT_H
#define QUORVANE_TESTS_BLACKBOX_PACK_SMALL_PROJECT_H

#include <string>
#include <vector>

#include "tests/blackbox/pack/transcript.h"
#include "tests/support/temp_folder.h"

namespace test {

// What stands in for the product's executable `name`: the header of a program for the target and no
// more.
std::string standIn(const std::string& name, const std::string& target = "linux-x86_64");

// A project of small files that are the same on every machine: application, updater, runtime,
// splash, icon, key, and stand-ins for the product's executables.
class SmallProject {
 public:
  SmallProject();

  // The project file's text, written by build().
  std::string text;

  // Runs quorvane-pack in the project's folder.
  Transcript pack(const std::vector<std::string>& words,
                  const std::map<std::string, std::string>& environment = {}) const;

  // Extracts an archive of the update site, signed with the project's key, into a new folder.
  // Returns its path.
  std::string extracted(const std::string& archive) const;

  // Writes the project file and runs 'quorvane-pack build' with the stand-ins and more words. The
  // second keeps all three bundles as folders.
  Transcript buildDownloads(const std::vector<std::string>& words = {},
                            const std::map<std::string, std::string>& environment = {}) const;
  Transcript build(std::vector<std::string> words = {},
                   const std::map<std::string, std::string>& environment = {}) const;

  // Puts `to` in place of the one `from` in the project file's text.
  void replace(const std::string& from, const std::string& to);

  std::string path() const { return folder_.path(); }
  std::string operator/(const std::string& name) const { return folder_ / name; }

 private:
  TempFolder folder_;
};

// Where build() puts the bundle "offline", "online" or "launcher" of the small project, or of one
// with another name, for this machine.
std::string bundleIn(const std::string& dist, const std::string& kind,
                     const std::string& name = "Small App");

// The name of a download of version 3 of the small project for this machine: "", "-online" or
// "-launcher".
std::string downloadOf(const std::string& kind = "", const std::string& name = "Small App");

// Makes the jar `path` in `folder`, without classes and with these lines more in its manifest.
void makeJar(const std::string& folder, const std::string& path, const std::string& lines);

// The SHA-256 of a file.
std::string digestOf(const std::string& path);

// A line for each file and folder below `folder`: permission bits, SHA-256 of a file, path.
std::string manifestOf(const std::string& folder);

}  // namespace test

#endif
