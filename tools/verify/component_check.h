#ifndef QUORVANE_TOOLS_VERIFY_COMPONENT_CHECK_H
#define QUORVANE_TOOLS_VERIFY_COMPONENT_CHECK_H

#include <map>
#include <string>

#include "archive/trust.h"
#include "crypto/signature.h"
#include "tools/formats/archive_reader.h"
#include "tools/formats/installer_stream.h"
#include "tools/system/temporary_folder.h"
#include "tools/verify/installer_check.h"

namespace tools {

// How archives are judged, and why a signature is required, for a message.
struct ReasonedTrust : Trust {
  const char* demand = "the params file asks for signatures";
};

// One component of an installer: what its records hold together.
class ComponentCheck {
 public:
  ComponentCheck(std::string name, const ReasonedTrust& trust, BundleReport* report)
      : name_(std::move(name)), trust_(trust), report_(report) {}

  // Reads `count` records. Throws InputError when the stream cannot be read on.
  void read(InstallerStream* stream, int count);

  // Reads the file `path` of an update site, one archive, as a record of that name.
  void readArchiveFile(const std::string& path);

  bool holds(const std::string& path) const { return files_.count(path) > 0; }
  // Reports a problem when a file is missing or empty.
  void requireFile(const std::string& path);
  // Checks the launch file and that what it names is there.
  void checkLaunchFile();
  // Checks that the product itself can start what the launch file says.
  void checkLaunch();
  // Checks the record version.txt, which says once more the version that `source` says.
  void checkVersion(const std::string& version, const char* source = "the Tail record");
  void checkSplash();
  // Checks that the record which says what an archive of an update site is says `wanted`.
  void checkIdentity(const std::string& wanted);
  // Adds what the component is to the facts.
  void describe(const std::string& version);

 private:
  // Where the bytes of a file lie.
  struct Place {
    std::string file;
    long offset = 0;
    long length = 0;
  };

  struct Name {
    std::string path;
    bool isFolder;
  };

  void problem(const std::string& what) { report_->problems.push_back(name_ + ": " + what); }
  // Notes a path that the component extracts, and reports one that is taken.
  void addName(const std::string& path, bool isFolder);
  void addFile(const std::string& path, const Place& place);
  void addArchive(const std::string& record, const std::string& path);
  void checkTrust(const std::string& record, const std::string& path,
                  const ArchiveListing& listing);
  std::string bytesOf(const std::string& path) const;

  std::string name_;
  ReasonedTrust trust_;
  BundleReport* report_;
  TemporaryFolder work_;
  std::map<std::string, Place> files_;
  std::map<std::string, Name> names_;  // by their form in small letters
  int unsignedArchives_ = 0;
  int verifiedArchives_ = 0;
  int archives_ = 0;
};

}  // namespace tools

#endif
