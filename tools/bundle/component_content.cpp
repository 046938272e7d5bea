#include "tools/bundle/component_content.h"

#include "formats/names.h"
#include "tools/bundle/record_names.h"
#include "tools/delivery/file_digest.h"
#include "tools/formats/update_site.h"
#include "tools/system/input_error.h"
#include "tools/system/temporary_folder.h"
#include "tools/system/whole_file.h"

namespace tools {

ComponentContent siteApplication(const ArchiveContent& application, const std::string& name,
                                 const std::string& version) {
  return {application,
          {{VERSION_FILE, version}, {COMPONENT_RECORD_PATH, componentRecord(name, version)}}};
}

ComponentContent siteUpdater(const ArchiveContent& updater, const std::string& lzmaTool,
                             const std::string& appName, const std::string& version,
                             const std::string& splash) {
  ComponentContent content = {
      updater, {{VERSION_FILE, version}, {COMPONENT_RECORD_PATH, updaterRecord(version, appName)}}};
  content.files.files.emplace_back(LZMA_TOOL, lzmaTool);
  if (!splash.empty()) {
    content.texts.emplace_back(SPLASH_FILE, splash);
  }
  return content;
}

std::string identityOf(const ComponentContent& content) {
  const std::string& folder = content.files.folder;
  std::string identity = "folder " + (folder.empty() ? "none" : digestOfContent(folder));
  for (const auto& [name, source] : content.files.files) {
    identity += "\nfile " + digestOfFile(source) + " " + name;
  }
  for (const auto& [name, bytes] : content.texts) {
    identity += "\nfile " + digestOfText(bytes) + " " + name;
  }
  return identity;
}

void writeComponent(const ComponentContent& content, const std::string& identity,
                    const std::string& path, const SigningKey* key) {
  const TemporaryFolder work;
  ArchiveContent files = content.files;
  for (const auto& [name, bytes] : content.texts) {
    const std::string source = work / std::to_string(files.files.size());
    writeWhole(source, bytes);
    files.files.emplace_back(name, source);
  }
  writeArchive(files, path, key);
  if (identityOf(content) != identity) {
    throw InputError(content.files.folder + " has changed while it was packed; build again");
  }
}

}  // namespace tools
