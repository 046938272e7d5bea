#include "tools/bundle/bundle_writer.h"

#include <filesystem>

#include "tools/system/input_error.h"
#include "tools/system/whole_file.h"

namespace fs = std::filesystem;

namespace tools {

std::string executableIn(const Bundle& bundle) {
  return bundle.path + "/Contents/MacOS/" + bundle.executableName;
}

static std::string escaped(const std::string& text) {
  std::string xml;
  for (const char c : text) {
    switch (c) {
      case '&':
        xml += "&amp;";
        break;
      case '<':
        xml += "&lt;";
        break;
      case '>':
        xml += "&gt;";
        break;
      default:
        xml += c;
    }
  }
  return xml;
}

static std::string entry(const std::string& key, const std::string& value) {
  return "\t<key>" + key + "</key>\n\t<string>" + escaped(value) + "</string>\n";
}

static std::string infoPlist(const Bundle& bundle) {
  std::string text =
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
      "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
      "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
      "<plist version=\"1.0\">\n<dict>\n";
  text += entry("CFBundleDisplayName", bundle.shownName);
  text += entry("CFBundleExecutable", bundle.executableName);
  if (!bundle.icon.empty()) {
    text += entry("CFBundleIconFile", fs::path(bundle.icon).filename());
  }
  text += entry("CFBundleIdentifier", bundle.identifier);
  text += entry("CFBundleInfoDictionaryVersion", "6.0");
  text += entry("CFBundleName", bundle.name);
  text += entry("CFBundlePackageType", "APPL");
  text += entry("CFBundleShortVersionString", bundle.version);
  text += entry("CFBundleVersion", bundle.version);
  text += entry("LSMinimumSystemVersion", "10.13");
  text += "\t<key>NSHighResolutionCapable</key>\n\t<true/>\n";
  text += entry("NSPrincipalClass", "NSApplication");
  return text + "</dict>\n</plist>\n";
}

// The modes do not depend on the umask.
static const fs::perms kFileMode{0644};
static const fs::perms kExecutableMode{0755};

static void makeFolder(const std::string& path) {
  std::error_code error;
  fs::create_directories(path, error);
  if (!error) {
    fs::permissions(path, kExecutableMode, error);
  }
  if (error) {
    throw InputError("cannot create " + path + ": " + error.message());
  }
}

static void copyInto(const std::string& from, const std::string& to, fs::perms mode) {
  std::error_code error;
  fs::copy_file(from, to, error);
  if (!error) {
    fs::permissions(to, mode, error);
  }
  if (error) {
    throw InputError("cannot copy " + from + " to " + to + ": " + error.message());
  }
}

void writeBundle(const Bundle& bundle) {
  if (fs::exists(fs::symlink_status(bundle.path))) {
    throw InputError(bundle.path + " already exists; remove it or choose another output folder");
  }
  for (const char* folder : {"", "/Contents", "/Contents/MacOS", "/Contents/Resources"}) {
    makeFolder(bundle.path + folder);
  }
  copyInto(bundle.executable, executableIn(bundle), kExecutableMode);
  if (!bundle.icon.empty()) {
    const std::string name = fs::path(bundle.icon).filename();
    copyInto(bundle.icon, bundle.path + "/Contents/Resources/" + name, kFileMode);
  }
  writeWhole(bundle.path + "/Contents/Info.plist", infoPlist(bundle));
}

}  // namespace tools
