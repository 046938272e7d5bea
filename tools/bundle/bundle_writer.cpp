#include "tools/bundle/bundle_writer.h"

#include <filesystem>

#include "tools/system/input_error.h"
#include "tools/system/whole_file.h"

namespace fs = std::filesystem;

namespace tools {

std::string executableIn(const Bundle& bundle) {
  return bundle.path + "/Contents/MacOS/" + bundle.executableName;
}

// The mode does not depend on the umask.
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
  const std::string infoPlist = encodeInfoPlist(bundle);
  if (fs::exists(fs::symlink_status(bundle.path))) {
    throw InputError(bundle.path + " already exists; remove it or choose another output folder");
  }
  for (const char* folder : {"", "/Contents", "/Contents/MacOS", "/Contents/Resources"}) {
    makeFolder(bundle.path + folder);
  }
  copyInto(bundle.executable, executableIn(bundle), kExecutableMode);
  for (const BundleFile& file : bundle.resources) {
    writeWhole(bundle.path + "/Contents/Resources/" + file.name, file.bytes);
  }
  writeWhole(bundle.path + "/Contents/Info.plist", infoPlist);
}

}  // namespace tools
