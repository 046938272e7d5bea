#include "launch/launch_app.h"
#include "launch/launch_steps.h"
#include "support/log/logging.h"

static void addMemoryOption(Launch* launch, const char* name, long megabytes) {
  if (megabytes < 1) {
    return;
  }
  const std::string option = name + std::to_string(megabytes) + "m";
  appendText(&launch->commandLine, option.c_str());
  appendText(&launch->jvmOptions, option.c_str());
}

void beginCommandLine(Launch* launch) {
  appendText(&launch->commandLine, launch->hasExecutable ? launch->executable : nullptr);
  addMemoryOption(launch, "-Xmx", launch->memoryMegabytes);
  // The stack field is the initial heap size: existing launch files use it that way.
  addMemoryOption(launch, "-Xms", launch->stackMegabytes);
}

void addMainClass(Launch* launch) {
  const bool known = launch->request.launchClass == LAUNCH_APPLICATION;
  launch->mainClassSlot = textCount(launch->commandLine);
  appendText(&launch->commandLine, known ? launch->mainClass.c_str() : nullptr);
  appendText(&launch->commandLine, launch->propertiesFile);
  appendText(&launch->appArguments, launch->propertiesFile);
}

// How the logged command line shows an empty slot, which ends it for the started process.
static const char* shown(const char* text) {
  return text == nullptr ? "(null)" : text;
}

static void logCommandLine(const Launch& launch) {
  logMessage("[Extractor] Executable: %s\n", shown(launch.commandLine.entries.front()));
  for (int i = 0; i < textCount(launch.commandLine); ++i) {
    logMessage("[Extractor] Argument %d: %s\n", i,
               shown(launch.commandLine.entries[static_cast<size_t>(i)]));
  }
  logMessage("[Extractor] This is a newer extractor... launchclass is %d\n",
             launch.request.launchClass);
}

void addCommandLineArguments(Launch* launch) {
  const LaunchRequest& request = launch->request;
  logMessage("[Extractor] Appending %d command line args\n", request.argc);
  for (int i = 0; i < request.argc; ++i) {
    appendText(&launch->commandLine, request.argv[i]);
    appendText(&launch->appArguments, request.argv[i]);
  }
  logCommandLine(*launch);
}
