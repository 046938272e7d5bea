#include <dlfcn.h>
#include <sys/stat.h>

#include "launcher/jvm/jvm_launch.h"
#include "launcher/jvm/jvm_places.h"
#include "platform/jvm_library.h"
#include "support/files/paths.h"
#include "support/log/logging.h"

char* setJavaHome(char* path, const char* jreFolder, int place) {
  static const char* const kHomes[JAVA_HOME_PLACES][3] = {
      {nullptr}, {"Contents", "Home", nullptr}, {"Contents", "Home", "jre"}};
  setPath(path, jreFolder);
  for (const char* part : kHomes[place]) {
    if (part != nullptr) {
      pathcat(path, part);
    }
  }
  return path;
}

// Writes into the path buffer `path` the place number `place` of the library `name`.
static void setLibraryPath(char* path, const char* jreFolder, int place, const char* name) {
  pathcat(pathcat(pathcat(setJavaHome(path, jreFolder, place), "lib"), "server"), name);
}

// Opens the library `name` at the first place where it opens; null when there is none.
static void* openLibraryNamed(const char* jreFolder, const char* name) {
  char path[PATH_BUFFER_SIZE];
  for (int place = 0; place < JAVA_HOME_PLACES; ++place) {
    setLibraryPath(path, jreFolder, place, name);
    void* library = dlopen(path, RTLD_LAZY);
    if (library != nullptr) {
      logMessage("[JNILaunch] Identified JRE path as %s\n", path);
      return library;
    }
  }
  return nullptr;
}

static bool holdsLibraryNamed(const char* jreFolder, const char* name) {
  char path[PATH_BUFFER_SIZE];
  for (int place = 0; place < JAVA_HOME_PLACES; ++place) {
    setLibraryPath(path, jreFolder, place, name);
    struct stat status {};
    if (stat(path, &status) == 0 && S_ISREG(status.st_mode)) {
      return true;
    }
  }
  return false;
}

bool holdsJvmLibrary(const char* jreFolder) {
  const char* otherName = platformJvmLibraryName();
  return holdsLibraryNamed(jreFolder, JVM_LIBRARY_NAME) ||
         (otherName != nullptr && holdsLibraryNamed(jreFolder, otherName));
}

void* loadJVMLibrary(const char* jreFolder) {
  void* library = openLibraryNamed(jreFolder, JVM_LIBRARY_NAME);
  const char* otherName = platformJvmLibraryName();
  if (library == nullptr && otherName != nullptr) {
    library = openLibraryNamed(jreFolder, otherName);
  }
  if (library == nullptr) {
    logMessage("[JNILaunch] [ERROR] Could not load dynamic library!\n");
  }
  return library;
}
