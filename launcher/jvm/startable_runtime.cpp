#include "launcher/jvm/startable_runtime.h"

#include <string>
#include <vector>

#include "launcher/jvm/jvm_places.h"
#include "platform/jvm_library.h"
#include "support/files/file_kind.h"
#include "support/files/folder_walk.h"
#include "support/files/paths.h"

static const char kNoLibrary[] = "its JVM library is missing or empty";
static const char kFailed[] = "the application failed to start with it twice in a row";
static const char kNoModules[] = "its modules file is missing or empty";

static bool mayHoldLibrary(const std::string& folder) {
  const char* otherName = platformJvmLibraryName();
  return !lacksContent(childPath(folder, JVM_LIBRARY_NAME).c_str()) ||
         (otherName != nullptr && !lacksContent(childPath(folder, otherName).c_str()));
}

// Runtimes of earlier layouts have jars instead of the modules, and one that is still being built
// has a folder. Every runtime with a modules file has the jar that reads it.
static bool lacksModules(const std::string& home) {
  const std::string modules = childPath(home, "lib/modules");
  if (!lacksContent(modules.c_str())) {
    return false;
  }
  return !isMissingOrBrokenLink(modules.c_str()) ||
         (exists(childPath(home, "lib/jrt-fs.jar").c_str()) &&
          isMissingOrBrokenLink(childPath(home, "modules").c_str()));
}

// The marker lies in the master folder, which the runtime's folder is in.
static bool failedToStart(const std::string& jreFolder) {
  const size_t slash = jreFolder.rfind('/');
  const size_t name = jreFolder.find('-', slash == std::string::npos ? 0 : slash) + 1;
  const size_t end = jreFolder.find('-', jreFolder.find('-', name) + 1);
  if (slash == std::string::npos || name == 0 || end == std::string::npos) {
    return false;
  }
  const std::string marker = "QVApps/updates/skipped-" + jreFolder.substr(name, end - name);
  return exists(childPath(jreFolder.substr(0, slash), marker).c_str());
}

static const char* damageInProcess(const char* jreFolder) {
  const char* flaw = nullptr;
  for (int place = 0; place < JAVA_HOME_PLACES; ++place) {
    char home[PATH_BUFFER_SIZE];
    setJavaHome(home, jreFolder, place);
    if (!mayHoldLibrary(childPath(home, "lib/server"))) {
      continue;
    }
    if (!lacksModules(home)) {
      return nullptr;
    }
    flaw = kNoModules;
  }
  if (flaw == nullptr) {
    flaw = isRegularFile(jreFolder) ? NO_FOLDER_FLAW : kNoLibrary;
  }
  return flaw;
}

// Checks `folder` and `levels` further ones below. A folder that cannot be listed may contain one.
static bool mayHoldLibraryBelow(const std::string& folder, int levels) {
  if (mayHoldLibrary(folder)) {
    return true;
  }
  if (levels == 0 || !leadsToFolder(folder.c_str())) {
    return false;
  }
  std::vector<std::string> names;
  if (!listNames(openFolder(folder.c_str()), &names)) {
    return true;
  }
  for (const std::string& name : names) {
    if (mayHoldLibraryBelow(childPath(folder, name), levels - 1)) {
      return true;
    }
  }
  return false;
}

// What every runtime with a JVM library has: without these, bin/java may be another kind of
// program, such as a script that starts a Java elsewhere.
static bool hadLibrary(const std::string& home) {
  return exists(childPath(home, "lib/jvm.cfg").c_str()) ||
         exists(childPath(home, "lib/server").c_str()) ||
         exists(childPath(home, "release").c_str());
}

// A java looks for its library in lib/VARIANT and, earlier, lib/ARCHITECTURE/VARIANT, of its home
// or the home's jre.
static bool mayStartAsChild(const std::string& home) {
  constexpr int kLevels = 2;
  if (isKnownNotExecutable(childPath(home, "bin/java").c_str())) {
    return false;
  }
  for (const std::string& inner : {home, childPath(home, "jre")}) {
    if (mayHoldLibraryBelow(childPath(inner, "lib"), kLevels)) {
      return !lacksModules(inner);
    }
  }
  return !hadLibrary(home);
}

const char* damageOfRuntime(const char* jreFolder) {
  const char* damage = damageInProcess(jreFolder);
  return damage != nullptr && mayStartAsChild(jreFolder) ? nullptr : damage;
}

const char* flawOfRuntimeInProcess(const char* jreFolder) {
  return failedToStart(jreFolder) ? kFailed : damageInProcess(jreFolder);
}

const char* flawOfRuntime(const char* jreFolder) {
  return failedToStart(jreFolder) ? kFailed : damageOfRuntime(jreFolder);
}
