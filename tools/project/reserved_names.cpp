#include "tools/project/reserved_names.h"

#include <string>
#include <vector>

#include "tools/system/ascii_case.h"
#include "tools/system/folder_tree.h"
#include "tools/system/input_error.h"

namespace tools {

namespace {
struct Reserved {
  const char* name;
  const char* use;
};
}  // namespace

static const char kVersionUse[] = "the version is written there";
static const char kArchiveUse[] = "the component's archive is stored there temporarily";

static std::vector<std::string> topNames(const ArchiveContent& content) {
  std::vector<std::string> names;
  if (!content.folder.empty()) {
    for (const auto& entry : listFolder(content.folder)) {
      names.push_back(entry.first);
    }
  }
  for (const auto& [path, source] : content.files) {
    names.push_back(path);
  }
  return names;
}

static void requireNone(const ArchiveContent& content, const std::vector<Reserved>& reserved) {
  for (const std::string& name : topNames(content)) {
    for (const auto& [taken, use] : reserved) {
      if (isSameButForCase(name, taken)) {
        const std::string place = content.folder.empty() ? name : content.folder + "/" + name;
        throw InputError(place + " has a name that the installer uses itself: " + use +
                         "; rename the file, or move it into a folder");
      }
    }
  }
}

void requireNoReservedNamesInUpdater(const ArchiveContent& content) {
  requireNone(content,
              {{"version.txt", kVersionUse},
               {"lzma64", "the tool that decompresses archives is put there"},
               {"nativesplash.png", "the image that 'splash' in [installer] names is put there"},
               {"updater.p2", kArchiveUse},
               {"updater.p2.l2", kArchiveUse}});
}

void requireNoReservedNamesInApplication(const ArchiveContent& content) {
  requireNone(content, {{"version.txt", kVersionUse},
                        {"application.p2", kArchiveUse},
                        {"application.p2.l2", kArchiveUse}});
}

}  // namespace tools
