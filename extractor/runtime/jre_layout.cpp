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

// The paths of a layout, each within a path buffer's limit.
struct Layout {
  std::string plain;       // the folder that the Java home's entries move into
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

static Layout layoutOf(const std::string& bundle, const std::string& plain) {
  return {plain, childPath(bundle, kHome), childPath(bundle, kExecutable),
          childPath(plain, "lib/libnpjp2.dylib"), childPath(plain, "lib/jspawnhelper")};
}

static Layout layoutOf(const char* bundlePath) {
  return layoutOf(bundlePath, plainFolderOf(bundlePath));
}

// mv FROM/* TO, and hidden folders too: rm would leave them, and a home that is not empty cannot be
// replaced by the link to the plain folder.
static void moveEntries(const std::string& from, const std::string& to) {
  if (!isFolder(to.c_str())) {
    return;  // a link in its place may lead anywhere
  }
  for (const std::string& name : allNames(openFolder(from.c_str()))) {
    const std::string entry = childPath(from, name);
    if (name[0] != '.' || isFolder(entry.c_str())) {
      rename(entry.c_str(), childPath(to, name).c_str());
    }
  }
}

// rm FILE
static void removeFile(const std::string& path) {
  struct stat status {};
  if (lstat(path.c_str(), &status) == 0 && !S_ISDIR(status.st_mode)) {
    unlink(path.c_str());
  }
}

// rm FOLDER/.*
static void removeHiddenFiles(const std::string& folder) {
  for (const std::string& name : allNames(openFolder(folder.c_str()))) {
    if (name[0] == '.') {
      removeFile(childPath(folder, name));
    }
  }
}

// ln -s TARGET PLACE: if the place is a folder, the link goes into it.
static void makeLink(const std::string& target, const std::string& place) {
  const std::string link =
      leadsToFolder(place.c_str()) ? childPath(place, pathToFile(target.c_str())) : place;
  // Like every step it ignores failures; the caller checks the result.
  (void)!symlink(target.c_str(), link.c_str());
}

// The steps at the paths `at` of a runtime whose links name the paths `named`.
static void makeSteps(const Layout& at, const Layout& named) {
  moveEntries(at.home, at.plain);
  removeHiddenFiles(at.home);
  rmdir(at.home.c_str());
  makeLink(named.plain, at.home);
  removeFile(at.executable);
  makeLink(named.library, at.executable);
}

// The equivalent shell commands. The quoting of the last one is broken, so that a shell refuses it:
// the helper keeps its mode.
static void logSteps(const Layout& layout) {
  const std::string home = "\"" + layout.home + "\"";
  const std::string executable = "\"" + layout.executable + "\"";
  for (const std::string& command :
       {"mv " + home + "/* \"" + layout.plain + "\"", "rm " + home + "/.* ", "rmdir " + home,
        "ln -s \"" + layout.plain + "\" " + home, "rm " + executable,
        "ln -s \"" + layout.library + "\" " + executable,
        "chmod a+x \"\"" + layout.helper + "\""}) {
    logMessage("[LNS] Running %s\n", command.c_str());
  }
}

static void startSection(const Layout& layout) {
  logStartSection(kLayoutSection);
  logMessage("[OSX JRE] Alias JRE path is %s\n", layout.plain.c_str());
}

void initOSXJRE(const char* bundlePath) {
  const Layout layout = layoutOf(bundlePath);
  startSection(layout);
  makeDir(layout.plain.c_str());
  logSteps(layout);
  makeSteps(layout, layout);
  logEndSection(kLayoutSection);
}

// The link replaces the home only if the home is empty.
static bool isLaidOut(const std::string& bundle, const Layout& at) {
  return isLink(at.home.c_str()) &&
         (!isFolder(childPath(bundle, "Contents/MacOS").c_str()) || exists(at.executable.c_str()));
}

bool layOutAside(const char* bundle, const char* home, const char* bundlePath) {
  const Layout at = layoutOf(bundle, home);
  if (isLink(at.home.c_str())) {
    return false;  // it may lead to an installed runtime
  }
  makeSteps(at, layoutOf(bundlePath));
  return isLaidOut(bundle, at);
}

void logLayout(const char* bundlePath, const LayoutOrigin& origin) {
  const Layout layout = layoutOf(bundlePath);
  startSection(layout);
  if (origin.isPlainHome) {
    logMessage("[OSX JRE] No Contents/Home in %s, it becomes %s itself\n", bundlePath,
               layout.plain.c_str());
  }
  if (origin.isNew) {
    chmod777(layout.plain.c_str());
  }
  logSteps(layout);
  logEndSection(kLayoutSection);
}

std::vector<std::string> placesOfLayout() {
  return {kHome, kExecutable};
}
