#include "launch/launch_file.h"

#include <cerrno>
#include <cstdlib>

#include "launch/launch_app.h"
#include "launch/launch_steps.h"
#include "support/encoding/field_reader.h"
#include "support/failure/failure.h"
#include "support/files/file_kind.h"
#include "support/log/logging.h"
#include "support/process/exit_status.h"

std::string readText(FILE* stream, const char* name) {
  return Block<char>(readString(stream, name)).get();
}

void readLaunchFileHead(Launch* launch) {
  char path[PATH_BUFFER_SIZE];
  setPath(path, launch->appFolder, LAUNCH_FILE_NAME);
  launch->launchFile.reset(fopen(path, "rb"));
  FILE* file = launch->launchFile.get();
  if (file == nullptr) {
    logError("Unable to open launch file %s\n", path);
    failProcess(EXIT_STATUS_FAILURE, Failure::InstallationDamaged);
  }
  launch->fileVersion = readInt(file, "LaunchFile VER");
  launch->mainClass = readText(file, "Class");
  readText(file, "Class OnUpdate");
  launch->appName = readText(file, "App Name");
  readText(file, "OS ICNS");
  readBoolean(file, "URL Required");
  launch->memoryMegabytes = readInt(file, "jvmMem (old)");
  launch->stackMegabytes = readInt(file, "jvmStack (old)");
}

void addExtraArguments(Launch* launch) {
  FILE* file = launch->launchFile.get();
  const long count = readInt(file, "Extra Args Count");
  logMessage("[Extractor] Reading %ld extra args\n", count);
  requireRoom(launch->commandLine, count);
  for (long i = 0; i < count; ++i) {
    const std::string argument = readText(file, "Extra Args Entry");
    appendText(&launch->commandLine, argument.c_str());
    appendText(&launch->appArguments, argument.c_str());
  }
}

// Skips the application's own JVM options. At the end of the file the rest would only read as
// empty, so a wrong count does not keep the launch busy.
static void skipAppJvmOptions(FILE* file) {
  const long count = readInt(file, "App JVM Option Count");
  if (count < 0) {
    logError("Unable to launch: the launch file counts %ld JVM options\n", count);
    failProcess(EXIT_STATUS_FAILURE, Failure::InstallationDamaged);
  }
  for (long i = 0; i < count && feof(file) == 0; ++i) {
    readText(file, "App JVM Option Entry");
  }
}

void readNewerFields(Launch* launch) {
  FILE* file = launch->launchFile.get();
  if (launch->fileVersion >= 3) {
    const std::string name = readText(file, "Main Class JRECompatibility");
    logMessage("[Extractor] Read JRE compatibility class %s\n", name.c_str());
    if (launch->request.launchClass == LAUNCH_COMPATIBILITY) {
      fillSlot(&launch->commandLine, launch->mainClassSlot, name.c_str());
    }
  }
  if (launch->fileVersion >= 4) {
    readText(file, "Main Class PostInstall");
    readText(file, "Main Class PreUninstall");
  }
  if (launch->fileVersion >= 5) {
    skipAppJvmOptions(file);
  }
  if (launch->fileVersion >= 6) {
    readBoolean(file, "Must Fork");
  }
}

// Reads one field silently: the launch will log it. Returns whether the field is terminated.
static bool readEndedField(FILE* file, int limit, std::string* text) {
  *text = Block<char>(readStringSilently(file, limit)).get();
  return feof(file) == 0 && ferror(file) == 0;
}

static bool skipFields(FILE* file, long count, int limit) {
  std::string text;
  for (long i = 0; i < count; ++i) {
    if (!readEndedField(file, limit, &text)) {
      return false;
    }
  }
  return true;
}

// Skips a list of texts that follows its count.
static bool skipList(FILE* file) {
  std::string count;
  return readEndedField(file, NUMBER_FIELD_LIMIT, &count) && atol(count.c_str()) >= 0 &&
         skipFields(file, atol(count.c_str()), DEFAULT_FIELD_LIMIT);
}

// Reads what every launch reads. Starting an application needs none of the fields that newer files
// have after it.
static bool readWhatALaunchNeeds(FILE* file, std::string* mainClass) {
  constexpr int kNamesAndPictures = 3;  // Class OnUpdate, App Name, OS ICNS
  constexpr int kNumbers = 3;           // URL Required, jvmMem, jvmStack
  return skipFields(file, 1, NUMBER_FIELD_LIMIT) &&
         readEndedField(file, DEFAULT_FIELD_LIMIT, mainClass) &&
         skipFields(file, kNamesAndPictures, DEFAULT_FIELD_LIMIT) &&
         skipFields(file, kNumbers, NUMBER_FIELD_LIMIT) && skipList(file) && skipList(file);
}

const char* flawOfLaunchFile(const char* path) {
  if (lacksContent(path)) {
    return isMissingOrBrokenLink(path) ? "its launch file is missing"
                                       : "its launch file is empty or no file";
  }
  const Stream file(fopen(path, "rb"));
  if (file == nullptr) {
    return errno == EACCES ? "its launch file cannot be read" : nullptr;
  }
  std::string mainClass;
  if (!readWhatALaunchNeeds(file.get(), &mainClass)) {
    return ferror(file.get()) == 0 ? "its launch file is cut short or damaged" : nullptr;
  }
  return mainClass.empty() ? "its launch file names no main class" : nullptr;
}
