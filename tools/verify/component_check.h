#ifndef QUORVANE_TOOLS_VERIFY_COMPONENT_CHECK_H
#define QUORVANE_TOOLS_VERIFY_COMPONENT_CHECK_H

#include <map>
#include <string>
#include <vector>

#include "archive/trust.h"
#include "crypto/signature.h"
#include "tools/formats/archive_reader.h"
#include "tools/formats/installer_stream.h"
#include "tools/formats/launch_file_writer.h"
#include "tools/objects/target_fit.h"
#include "tools/system/temporary_folder.h"
#include "tools/verify/installer_check.h"

namespace tools {

// How archives are judged, and why a signature is required, for a message.
struct ReasonedTrust : Trust {
  const char* demand = "the params file requires signatures";
};

// One component of an installer: the joint contents of its records.
class ComponentCheck {
 public:
  ComponentCheck(std::string name, const ReasonedTrust& trust, BundleReport* report)
      : name_(std::move(name)), trust_(trust), report_(report) {}

  // Reads `count` records. Throws InputError if the stream cannot be read further.
  void read(InstallerStream* stream, int count);

  // Reads the file `path` of an update site, one archive, as a record of that name.
  void readArchiveFile(const std::string& path);

  const std::string& name() const { return name_; }
  bool holds(const std::string& path) const { return files_.count(path) > 0; }
  bool hasContent(const std::string& path) const {
    return holds(path) && files_.at(path).length > 0;
  }
  // Reports a problem if a file is missing or empty.
  void requireFile(const std::string& path);
  // Checks the launch file and that what it names exists: class path and main class.
  void checkLaunchFile();
  // Checks that the product itself can start what the launch file describes.
  void checkLaunch();
  // Checks the record version.txt, which repeats the version from `source`.
  void checkVersion(const std::string& version, const char* source = "the Tail record");
  void checkSplash();
  // Checks that the record that identifies an update site's archive says `wanted`.
  void checkIdentity(const std::string& wanted);
  // Returns what the file `path`, which it holds, is for. Throws InputError if that is damaged.
  [[nodiscard]] std::vector<ObjectPart> objectAt(const std::string& path) const;
  // Returns its programs and libraries, and reports damaged ones.
  [[nodiscard]] std::vector<ObjectFile> objects();
  // Compares the signed code for macOS with its signatures.
  void checkCode();
  // Adds a description of the component to the facts.
  void describe(const std::string& version);

 private:
  // The location of a file's bytes.
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
  // Records a path that the component extracts, and reports one that is already taken.
  void addName(const std::string& path, bool isFolder);
  void addFile(const std::string& path, const Place& place);
  void addArchive(const std::string& record, const std::string& path);
  void checkTrust(const std::string& record, const std::string& path,
                  const ArchiveListing& listing);
  bool holdsFolder(const std::string& path) const;
  void checkClassPath(const LaunchFile& launch);
  void checkMainClass(const LaunchFile& launch);
  std::string bytesOf(const std::string& path) const;

  std::string name_;
  ReasonedTrust trust_;
  BundleReport* report_;
  TemporaryFolder work_;
  std::map<std::string, Place> files_;
  std::map<std::string, Name> names_;  // by their lower-case form
  int records_ = 0;
  int unsignedArchives_ = 0;
  int verifiedArchives_ = 0;
  int archives_ = 0;
};

}  // namespace tools

#endif
