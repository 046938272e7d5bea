#include "tools/bundle/installer_writer.h"

#include <filesystem>

#include "tools/bundle/record_names.h"
#include "tools/formats/archive_records.h"
#include "tools/formats/params_check.h"
#include "tools/formats/update_site.h"
#include "tools/system/temporary_folder.h"
#include "tools/system/whole_file.h"

namespace fs = std::filesystem;

namespace tools {

// One record of the stream of archives: the file `bytes` under `name`.
static std::string record(const std::string& name, const std::string& bytes) {
  return fileRecordHead(name, static_cast<long>(bytes.size()), EntryKind::file) + bytes;
}

// A component as one record: its content as a nested archive, compressed and signed.
static std::string component(const std::string& name, const std::string& archive) {
  return record(name + ".p2.l2", readWhole(archive));
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

static std::string updaterRecords(const Installer& installer) {
  // An empty record takes the place of a missing splash.
  const std::string splash =
      installer.splash.empty() ? std::string(1, '\0') : record(SPLASH_FILE, installer.splash);
  return record(LZMA_TOOL, readWhole(installer.lzmaTool)) +
         component("updater", installer.updaterArchive) + splash +
         record(VERSION_FILE, installer.tail.guVersion);
}

static std::string appRecords(const Installer& installer) {
  return component("application", installer.applicationArchive) +
         record(VERSION_FILE, installer.tail.appVersion);
}

static std::string archivesOf(const Installer& installer) {
  std::string archives = updaterRecords(installer);
  if (!installer.tail.jreVersion.empty()) {
    archives += component("runtime", installer.runtimeArchive);
  }
  if (!installer.tail.appVersion.empty()) {
    archives += appRecords(installer);
  }
  return archives;
}

void writeInstaller(const Installer& installer) {
  // Everything is read before anything is written: wrong input leaves no partial bundle.
  const std::string tail = encodeTail(installer.tail) + archivesOf(installer);
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

}  // namespace tools
