#include "extractor/runtime/jre_layout.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <string>
#include <vector>

#include "support/files/file_kind.h"
#include "support/files/file_operations.h"
#include "support/files/folder_walk.h"
#include "support/files/paths.h"
#include "support/log/logging.h"

static const char kHome[] = "Contents/Home";
static const char kExecutable[] = "Contents/MacOS/JavaAppletPlugin";
static const char kLayoutSection[] = "OSX JRE initialisation";

namespace {

// The paths of the layout, each within a path buffer's limit.
struct Layout {
  std::string bundle;
  std::string plain;       // the bundle's path without ".plugin"
  std::string home;        // Contents/Home of the bundle
  std::string executable;  // Contents/MacOS/JavaAppletPlugin of the bundle
  std::string library;     // lib/libnpjp2.dylib of the plain folder
  std::string helper;      // lib/jspawnhelper of the plain folder
};

}  // namespace

std::string plainFolderOf(const std::string& bundlePath) {
  constexpr size_t kSuffix = sizeof ".plugin" - 1;
  return bundlePath.substr(0, bundlePath.size() > kSuffix ? bundlePath.size() - kSuffix : 0);
}

static Layout layoutOf(const char* bundlePath) {
  Layout layout;
  layout.bundle = bundlePath;
  layout.plain = plainFolderOf(layout.bundle);
  layout.home = childPath(layout.bundle, kHome);
  layout.executable = childPath(layout.bundle, kExecutable);
  layout.library = childPath(layout.plain, "lib/libnpjp2.dylib");
  layout.helper = childPath(layout.plain, "lib/jspawnhelper");
  return layout;
}

// Returns the names in `folder` that a shell's .* (hidden) or * gives, without "." and "..".
static std::vector<std::string> namesIn(const std::string& folder, bool hidden) {
  std::vector<std::string> names;
  for (const std::string& name : allNames(openFolder(folder.c_str()))) {
    if ((name[0] == '.') == hidden) {
      names.push_back(name);
    }
  }
  return names;
}

static void moveEntry(const std::string& from, const std::string& to, const std::string& name) {
  rename(childPath(from, name).c_str(), childPath(to, name).c_str());
}

// mv FROM/* TO. Hidden folders go along, first: rm leaves them, and a home that is not empty would
// stay in the place of the link to the plain folder.
static void moveEntries(const std::string& from, const std::string& to) {
  if (!isFolder(to.c_str())) {
    return;  // a link in its place may lead anywhere
  }
  for (const std::string& name : namesIn(from, true)) {
    if (isFolder(childPath(from, name).c_str())) {
      moveEntry(from, to, name);
    }
  }
  for (const std::string& name : namesIn(from, false)) {
    moveEntry(from, to, name);
  }
}

// rm FILE
static void removeFile(const std::string& path) {
  struct stat status {};
  if (lstat(path.c_str(), &status) == 0 && !S_ISDIR(status.st_mode)) {
    unlink(path.c_str());
  }
}

std::vector<std::string> linksOfLayout() {
  return {kHome, kExecutable};
}

void removeHiddenFiles(const char* folder) {
  for (const std::string& name : namesIn(folder, true)) {
    removeFile(childPath(folder, name));
  }
}

// ln -s TARGET PLACE: where a folder stands at the place already, the link goes into it.
static void makeLink(const std::string& target, const std::string& place) {
  const std::string link =
      leadsToFolder(place.c_str()) ? childPath(place, pathToFile(target.c_str())) : place;
  if (symlink(target.c_str(), link.c_str()) != 0) {
    return;  // as every step, without a word
  }
}

// A runtime that was adopted from the system is often a plain Java home, without Contents/Home. The
// steps alone would leave it under the bundle's name with an empty plain folder beside it; both
// names carry the same version, and the empty one, listed first, would be taken for the runtime. So
// such a home becomes the plain folder as it is, in one rename, and the steps link it into a bundle
// that holds nothing else: the runtime is found where that of every other bundle is. Returns
// whether that was done.
static bool adoptPlainHome(const Layout& layout) {
  if (isThere(layout.home.c_str()) || !leadsToFolder(childPath(layout.bundle, "bin").c_str())) {
    return false;
  }
  const char* bundle = layout.bundle.c_str();
  if (rename(bundle, layout.plain.c_str()) != 0) {
    return false;
  }
  logMessage("[OSX JRE] No Contents/Home in %s, it becomes %s itself\n", bundle,
             layout.plain.c_str());
  mkdir(bundle, 0777);
  mkdir(childPath(layout.bundle, "Contents").c_str(), 0777);
  return true;
}

// The plain folder's name says that it is a complete runtime. Where it does not stand yet, the home
// takes its place in one step, so that the name never stands for half a runtime, not even after a
// crash; the commands that are logged after that find nothing left to move. Returns whether that
// was done.
static bool moveHomeWhole(const Layout& layout) {
  const char* home = layout.home.c_str();
  if (isThere(layout.plain.c_str()) || !isFolder(home)) {
    return false;
  }
  removeHiddenFiles(home);
  return rename(home, layout.plain.c_str()) == 0;
}

static void moveHome(const Layout& layout) {
  const char* home = layout.home.c_str();
  logMessage("[LNS] Running mv \"%s\"/* \"%s\"\n", home, layout.plain.c_str());
  moveEntries(layout.home, layout.plain);
  logMessage("[LNS] Running rm \"%s\"/.* \n", home);
  removeHiddenFiles(home);
  logMessage("[LNS] Running rmdir \"%s\"\n", home);
  rmdir(home);
  logMessage("[LNS] Running ln -s \"%s\" \"%s\"\n", layout.plain.c_str(), home);
  makeLink(layout.plain, layout.home);
}

bool lacksExecutableLink(const char* bundlePath) {
  const Layout layout = layoutOf(bundlePath);
  return isFolder(childPath(layout.bundle, "Contents/MacOS").c_str()) &&
         isKnownMissing(layout.executable.c_str());
}

void linkExecutable(const char* bundlePath) {
  const Layout layout = layoutOf(bundlePath);
  const char* executable = layout.executable.c_str();
  logMessage("[LNS] Running rm \"%s\"\n", executable);
  removeFile(layout.executable);
  logMessage("[LNS] Running ln -s \"%s\" \"%s\"\n", layout.library.c_str(), executable);
  makeLink(layout.library, layout.executable);
}

void initOSXJRE(const char* bundlePath) {
  logStartSection(kLayoutSection);
  const Layout layout = layoutOf(bundlePath);
  logMessage("[OSX JRE] Alias JRE path is %s\n", layout.plain.c_str());
  const bool stood = isThere(layout.plain.c_str());
  if (!adoptPlainHome(layout) && !moveHomeWhole(layout)) {
    makeDir(layout.plain.c_str());
  } else if (!stood) {
    chmod777(layout.plain.c_str());
  }
  moveHome(layout);
  linkExecutable(bundlePath);
  // The command's quoting is broken, so that a shell refuses it: the helper keeps its mode.
  logMessage("[LNS] Running chmod a+x \"\"%s\"\n", layout.helper.c_str());
  logEndSection(kLayoutSection);
}
