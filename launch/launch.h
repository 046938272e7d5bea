#ifndef QUORVANE_LAUNCH_LAUNCH_H
#define QUORVANE_LAUNCH_LAUNCH_H

#include <string>
#include <vector>

#include "launch/text_list.h"
#include "launcher/jvm/jvm_launch.h"
#include "support/files/paths.h"
#include "support/owned.h"

// The record that the steps of one launch work on.

// What the caller asked for; the texts are the caller's.
struct LaunchRequest {
  const char* masterFolder;
  const char* properties;
  int argc;
  char** argv;
  const char* appFolderName;
  const char* updateUrl;
  const char* dynamicUpdateUrl;  // or null
  const char* jre;
  int launchClass;
  const char* launchedFromDynprops;
};

// Capacity of the lists and buffers, in entries and in bytes including the terminator. The command
// line has one more entry for its terminator.
constexpr int COMMAND_LINE_ROOM = 499;
constexpr int JVM_OPTIONS_ROOM = 1000;
constexpr int APP_ARGUMENTS_ROOM = 1000;
constexpr int CLASS_PATH_ENTRY_SIZE = 1000;
constexpr size_t ADDED_PROPERTIES_SIZE = 200000;

struct Launch {
  explicit Launch(const LaunchRequest& launchRequest) : request(launchRequest) {}

  const LaunchRequest& request;
  char appFolder[PATH_BUFFER_SIZE] = "";

  // From the launch file, which stays open while the next steps read it.
  Stream launchFile;
  long fileVersion = 0;
  std::string mainClass;
  std::string appName;
  long memoryMegabytes = 0;
  long stackMegabytes = 0;

  // The runtime. Launches that start nothing have no executable, and only the private runtime has
  // an options file.
  std::string jreFolderName;
  bool hasExecutable = false;
  char executable[PATH_BUFFER_SIZE] = "";
  bool hasOptionsFile = false;
  char optionsFile[PATH_BUFFER_SIZE] = "";

  // What is started: as a process with the command line, through JNI with the three others.
  TextList commandLine{"process command line", COMMAND_LINE_ROOM};
  TextList jvmOptions{"JVM options", JVM_OPTIONS_ROOM};
  TextList classPath{"class path", CLASS_PATH_SIZE};
  TextList appArguments{"application arguments", APP_ARGUMENTS_ROOM};
  int mainClassSlot = 0;  // in the command line

  std::vector<char> properties;
  char propertiesFile[PATH_BUFFER_SIZE] = "";
};

#endif
