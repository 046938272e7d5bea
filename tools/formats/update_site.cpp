#include "tools/formats/update_site.h"

#include <filesystem>

#include "formats/names.h"
#include "formats/site_names.h"
#include "tools/system/input_error.h"
#include "tools/system/temporary_folder.h"
#include "tools/system/whole_file.h"

namespace fs = std::filesystem;

namespace tools {

std::string readSiteVersion(const std::string& site, const std::string& name) {
  constexpr size_t kMostDigits = 18;
  const std::string path = site + "/" + versionFileName(name);
  const std::string text = readWhole(path);
  const std::string version = text.substr(0, text.find('\n'));
  const bool isNumber = !version.empty() && version.size() <= kMostDigits &&
                        version.find_first_not_of("0123456789") == std::string::npos &&
                        (version[0] != '0' || version.size() == 1);
  if (!isNumber || text.size() > version.size() + 1) {
    throw InputError(path + " does not contain a whole number of up to 18 digits");
  }
  return version;
}

std::string componentRecord(const std::string& name, const std::string& version) {
  return name + " " + version;
}

std::string updaterRecord(const std::string& version, const std::string& application) {
  return componentRecord(UPDATER_NAME, version) + UPDATER_RECORD_LINK + application;
}

static void createSite(const std::string& site) {
  std::error_code error;
  fs::create_directories(site, error);
  fs::permissions(site, fs::perms{0755}, error);
  if (error) {
    throw InputError("cannot create " + site + ": " + error.message());
  }
}

std::string writeSiteComponent(const std::string& site, const std::string& name,
                               const std::string& version, const std::string& record,
                               ArchiveContent content, const SigningKey* key) {
  createSite(site);
  const TemporaryFolder work;
  writeWhole(work / "component", record);
  content.files.emplace_back(COMPONENT_RECORD_PATH, work / "component");
  const std::string archive = site + "/" + siteArchiveName(name, version);
  writeArchive(content, archive, key);
  writeWhole(site + "/" + versionFileName(name), version + "\n");
  return archive;
}

std::string copySiteComponent(const std::string& site, const std::string& name,
                              const std::string& version, const std::string& archive) {
  createSite(site);
  const std::string copy = site + "/" + siteArchiveName(name, version);
  std::error_code error;
  fs::copy_file(archive, copy, error);
  if (error) {
    throw InputError("cannot copy " + archive + " to " + copy + ": " + error.message());
  }
  writeWhole(site + "/" + versionFileName(name), version + "\n");
  return copy;
}

}  // namespace tools
