#include "tools/bundle/bundle_reader.h"

#include <unistd.h>

#include <filesystem>

#include "tools/system/input_error.h"
#include "tools/system/whole_file.h"

namespace fs = std::filesystem;

namespace tools {

static void replaceAll(std::string* text, const std::string& from, const std::string& to) {
  for (size_t at = text->find(from); at != std::string::npos; at = text->find(from, at + 1)) {
    text->replace(at, from.size(), to);
  }
}

std::string plistText(const std::string& plist, const std::string& key) {
  const std::string start = "<string>";
  const size_t found = plist.find("<key>" + key + "</key>");
  const size_t open = found == std::string::npos ? found : plist.find(start, found);
  const size_t close = open == std::string::npos ? open : plist.find("</string>", open);
  if (close == std::string::npos) {
    return "";
  }
  std::string text = plist.substr(open + start.size(), close - open - start.size());
  replaceAll(&text, "&lt;", "<");
  replaceAll(&text, "&gt;", ">");
  replaceAll(&text, "&amp;", "&");
  return text;
}

std::string executableOfBundle(const std::string& bundle) {
  const std::string plist = bundle + "/Contents/Info.plist";
  std::error_code ignored;
  if (!fs::is_regular_file(plist, ignored)) {
    throw InputError(bundle + " is not an app bundle: Contents/Info.plist is missing");
  }
  const std::string name = plistText(readWhole(plist), "CFBundleExecutable");
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
