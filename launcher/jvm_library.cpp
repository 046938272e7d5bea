#include <dlfcn.h>

#include "launcher/jvm_launch.h"
#include "platform/jvm_library.h"
#include "support/logging.h"
#include "support/paths.h"

// Writes into the path buffer `path` the place number `place` of the library `name`.
static void setLibraryPath(char* path, const char* jreFolder, int place, const char* name) {
  static const char* const kHomes[][3] = {
      {nullptr}, {"Contents", "Home", nullptr}, {"Contents", "Home", "jre"}};
  setPath(path, jreFolder);
  for (const char* part : kHomes[place]) {
    if (part != nullptr) {
      pathcat(path, part);
    }
  }
  pathcat(pathcat(pathcat(path, "lib"), "server"), name);
}

// Opens the library `name` at the first place where it opens; null when there is none.
static void* openLibraryNamed(const char* jreFolder, const char* name) {
  char path[PATH_BUFFER_SIZE];
  for (int place = 0; place < 3; ++place) {
    setLibraryPath(path, jreFolder, place, name);
    void* library = dlopen(path, RTLD_LAZY);
    if (library != nullptr) {
      logMessage("[JNILaunch] Identified JRE path as %s\n", path);
      return library;
    }
  }
  return nullptr;
}

void* loadJVMLibrary(const char* jreFolder) {
  void* library = openLibraryNamed(jreFolder, "libjvm.dylib");
  const char* otherName = platformJvmLibraryName();
  if (library == nullptr && otherName != nullptr) {
    library = openLibraryNamed(jreFolder, otherName);
  }
  if (library == nullptr) {
    logMessage("[JNILaunch] [ERROR] Could not load dynamic library!\n");
  }
  return library;
}
