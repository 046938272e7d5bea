#include "tools/bundle/installer_writer.h"

#include <filesystem>

#include "formats/names.h"
#include "tools/formats/archive_records.h"
#include "tools/formats/params_check.h"
#include "tools/formats/update_site.h"
#include "tools/system/temporary_folder.h"
#include "tools/system/whole_file.h"

namespace fs = std::filesystem;

namespace tools {

// A component's records besides its archive.
static const char kLzmaTool[] = "lzma64";
static const char kSplash[] = "nativesplash.png";
static const char kVersionFile[] = "version.txt";

// One record of the stream of archives: the file `bytes` under `name`.
static std::string record(const std::string& name, const std::string& bytes) {
  return fileRecordHead(name, static_cast<long>(bytes.size()), EntryKind::file) + bytes;
}

// A component as one record: its content as a nested archive, compressed and signed.
static std::string component(const std::string& name, const ArchiveContent& content,
                             const SigningKey* key) {
  const TemporaryFolder work;
  const std::string file = name + ".p2.l2";
  writeArchive(content, work / file, key);
  return record(file, readWhole(work / file));
}

// A folder with the Java home at its place in a runtime bundle.
class RuntimeBundle {
 public:
  explicit RuntimeBundle(const std::string& home) {
    fs::create_directories(work_ / "Contents/MacOS");
    fs::create_directory_symlink(fs::absolute(home), work_ / "Contents/Home");
  }
  std::string path() const { return work_ / "."; }

 private:
  TemporaryFolder work_;
};

static std::string updaterRecords(const Installer& installer, const SigningKey* key) {
  // An empty record takes the place of a missing splash.
  const std::string splash =
      installer.splash.empty() ? std::string(1, '\0') : record(kSplash, installer.splash);
  return record(kLzmaTool, readWhole(installer.lzmaTool)) +
         component("updater", installer.updater, key) + splash +
         record(kVersionFile, installer.tail.guVersion);
}

static std::string appRecords(const Installer& installer, const SigningKey* key) {
  return component("application", installer.application, key) +
         record(kVersionFile, installer.tail.appVersion);
}

static std::string archivesOf(const Installer& installer, const SigningKey* key) {
  std::string archives = updaterRecords(installer, key);
  if (!installer.tail.jreVersion.empty()) {
    archives += record("runtime.p2.l2", readWhole(installer.runtimeArchive));
  }
  if (!installer.tail.appVersion.empty()) {
    archives += appRecords(installer, key);
  }
  return archives;
}

void writeInstaller(const Installer& installer, const SigningKey* key) {
  // Everything is read before anything is written: wrong input leaves no partial bundle.
  const std::string tail = encodeTail(installer.tail) + archivesOf(installer, key);
  const std::string params = encodeParams(installer.properties);
  requireRoomForProperties(installer.properties, installer.tail);
  writeBundle(installer.bundle);
  const std::string resources = installer.bundle.path + "/Contents/Resources/";
  writeWhole(resources + "Tail", tail);
  writeWhole(resources + "AppParams.excludefromsigning", params);
}

std::string writeSiteRuntime(const std::string& site, const std::string& name,
                             const std::string& version, const std::string& runtimeHome,
                             const SigningKey* key) {
  const RuntimeBundle runtime(runtimeHome);
  ArchiveContent content;
  content.folder = runtime.path();
  return writeSiteComponent(site, name, version, componentRecord(name, version), content, key);
}

void writeSiteApplication(const std::string& site, const Installer& installer,
                          const std::string& version, const SigningKey* key) {
  const TemporaryFolder work;
  writeWhole(work / kVersionFile, version);
  ArchiveContent content = installer.application;
  content.files.emplace_back(kVersionFile, work / kVersionFile);
  const std::string& name = installer.tail.appName;
  writeSiteComponent(site, name, version, componentRecord(name, version), content, key);
}

void writeSiteUpdater(const std::string& site, const Installer& installer, const SigningKey* key) {
  const std::string& version = installer.tail.guVersion;
  const TemporaryFolder work;
  writeWhole(work / kVersionFile, version);
  ArchiveContent content = installer.updater;
  content.files.emplace_back(kLzmaTool, installer.lzmaTool);
  content.files.emplace_back(kVersionFile, work / kVersionFile);
  if (!installer.splash.empty()) {
    writeWhole(work / kSplash, installer.splash);
    content.files.emplace_back(kSplash, work / kSplash);
  }
  const std::string record = updaterRecord(version, installer.tail.appName);
  writeSiteComponent(site, UPDATER_NAME, version, record, content, key);
}

}  // namespace tools
