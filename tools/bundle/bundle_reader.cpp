#include "tools/bundle/bundle_reader.h"

#include <unistd.h>

#include <filesystem>

#include "tools/bundle/plist_reader.h"
#include "tools/system/input_error.h"
#include "tools/system/whole_file.h"

namespace fs = std::filesystem;

namespace tools {

std::string plistText(const std::string& plist, const std::string& key) {
  PlistReader reader(plist);
  std::string text;
  reader.table(reader.start(), [&](const std::string& name, const PlistTag& value) {
    if (name == key && value.name == "string") {
      text = reader.text(value);
    } else {
      reader.skip(value);
    }
  });
  return text;
}

static std::string executableNameIn(const std::string& plist) {
  const std::string text = readWhole(plist);
  try {
    return plistText(text, "CFBundleExecutable");
  } catch (const InputError& error) {
    throw InputError(plist + " " + error.what() + "; it must be a property list in XML");
  }
}

std::string executableOfBundle(const std::string& bundle) {
  const std::string plist = bundle + "/Contents/Info.plist";
  std::error_code ignored;
  if (!fs::is_regular_file(plist, ignored)) {
    throw InputError(bundle + " is not an app bundle: Contents/Info.plist is missing");
  }
  const std::string name = executableNameIn(plist);
  if (name.empty() || name.find('/') != std::string::npos) {
    throw InputError(plist + " names no executable: CFBundleExecutable is \"" + name + "\"");
  }
  const std::string path = bundle + "/Contents/MacOS/" + name;
  if (!fs::is_regular_file(path, ignored)) {
    throw InputError(plist + " names the executable " + name + ", which is not at " + path);
  }
  if (access(path.c_str(), X_OK) != 0) {
    throw InputError(path + " is not executable; run 'chmod 755' on it");
  }
  return path;
}

}  // namespace tools
