#include "launcher/installation/install_locations.h"

#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "formats/names.h"
#include "support/encoding/field_reader.h"
#include "support/failure/failure.h"
#include "support/files/file_operations.h"
#include "support/files/paths.h"
#include "support/log/logging.h"
#include "support/process/exit_status.h"
#include "support/text/strings.h"

static const int kJreNameLimit = 500;

// Returns the home folder of the real user, or null if the password database has none. The text is
// valid until the next query.
static const char* homeFolder() {
  const passwd* entry = getpwuid(getuid());
  return entry == nullptr ? nullptr : entry->pw_dir;
}

// A fresh account may not have a Library folder yet; it is as private as the platform makes it.
static void makeLibraryFolder(const char* home) {
  char path[PATH_BUFFER_SIZE];
  setPath(path, home);
  appendToPath(path, "/Library");
  if (mkdir(path, 0700) == 0) {
    logMessage("[Launcher] Created %s\n", path);
  }
}

static void setUserDirectory(char* path) {
  const char* home = homeFolder();
  if (home == nullptr) {
    logMessage("ERROR: Unable to get shared dir!");
    failProcess(EXIT_STATUS_FAILURE, Failure::NoHomeFolder);
  }
  logMessage("HomeDir is %s\n", home);
  setPath(path, home);
  makeLibraryFolder(home);
  appendToPath(path, "/Library/Application Support");
  makeDir(path);
}

char* locateSharedDirectory(const char* installType) {
  char* path = static_cast<char*>(calloc(PATH_BUFFER_SIZE, 1));
  if (path == nullptr) {
    logMessage("ERROR: Unable to get shared dir!");
    failProcess(EXIT_STATUS_FAILURE, Failure::NotStarted);
  }
  if (strcmp(installType, "perm_all") == 0) {
    logMessage("Permanent install for all users\n");
    return setPath(path, "/Library/Application Support");
  }
  const bool isPermanent = strcmp(installType, "perm_user") == 0;
  logMessage(isPermanent ? "Permanent install for current user\n" : "Temporary install\n");
  setUserDirectory(path);
  return path;
}

static FILE* openOverride(const char* masterFolder) {
  char path[PATH_BUFFER_SIZE];
  setPath(path, masterFolder, "QVApps", "JreNameOverride");
  return fopen(path, "r");
}

char* getJREName(const char* masterFolder) {
  FILE* file = openOverride(masterFolder);
  if (file == nullptr) {
    logMessage("No JRE name override!\n");
    return allocCopy(DEFAULT_JRE_NAME);
  }
  char* name = readString(file, "JRE Override App Name", kJreNameLimit);
  fclose(file);
  if (strcmp(name, "-") == 0) {
    logMessage("Ignoring JRE name -, using Mac64JRE\n");
    free(name);
    return allocCopy(DEFAULT_JRE_NAME);
  }
  logMessage("JRE name overridden to %s\n", name);
  return name;
}
