// Launches an application as the installing flow does, with everything given on its command line:
//
//   launch_driver MASTER APP_FOLDER JRE [OPTION ...] [-- ARGUMENT ...]
//
//   --class N              launch class; 0 when not given
//   --spawn                no launch inside this process
//   --update-url TEXT      the update URL; empty when not given
//   --dynamic-url TEXT     the dynamic update URL; none when not given
//   --from TEXT            what the launch is said to come from
//   --static KEY VALUE     adds a static property to those handed on
//   --dynamic KEY VALUE    adds a dynamic one
//   --wait-for FILE        waits for that file, for 60 seconds at most, before the driver ends
//
// What follows "--" is passed on. A pause before a retry prints a line instead of sleeping. At the
// end the driver prints what the launch returned and ends with status 0.

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "launch/launch_app.h"
#include "launch/launch_properties.h"
#include "launch/retry.h"
#include "platform/process_end.h"

struct Options {
  int launchClass = LAUNCH_APPLICATION;
  const char* updateUrl = "";
  const char* dynamicUrl = nullptr;
  const char* from = "";
  const char* awaited = nullptr;
  std::vector<char> properties = std::vector<char>(200000);
};

// The message before it may have no line end.
static void pauseNoTime(unsigned seconds) {
  printf("\n[Driver] Pause of %u seconds\n", seconds);
}

[[noreturn]] static void refuse(const char* argument) {
  fprintf(stderr, "launch_driver: what is %s?\n", argument);
  exit(2);
}

// Takes the option at argv[0] and returns the number of words it has.
static int takeOption(Options* options, char** argv) {
  const char* name = argv[0];
  if (strcmp(name, "--spawn") == 0) {
    forceSpawn = true;
    return 1;
  }
  if (argv[1] == nullptr) {
    refuse(name);
  }
  if (strcmp(name, "--class") == 0) {
    options->launchClass = atoi(argv[1]);
  } else if (strcmp(name, "--update-url") == 0) {
    options->updateUrl = argv[1];
  } else if (strcmp(name, "--dynamic-url") == 0) {
    options->dynamicUrl = argv[1];
  } else if (strcmp(name, "--from") == 0) {
    options->from = argv[1];
  } else if (strcmp(name, "--wait-for") == 0) {
    options->awaited = argv[1];
  } else if (strcmp(name, "--static") == 0 && argv[2] != nullptr) {
    addStaticProperty(options->properties.data(), argv[1], argv[2]);
    return 3;
  } else if (strcmp(name, "--dynamic") == 0 && argv[2] != nullptr) {
    addDynamicProperty(options->properties.data(), argv[1], argv[2]);
    return 3;
  } else {
    refuse(name);
  }
  return 2;
}

// The test ends what its driver leaves behind, so that the driver has to outlive what it started.
static void waitFor(const char* path) {
  for (int i = 0; i < 6000 && access(path, F_OK) != 0; ++i) {
    usleep(10000);
  }
}

int main(int argc, char** argv) {
  constexpr int kFirstOption = 4;
  if (argc < kFirstOption) {
    refuse("a command line without MASTER APP_FOLDER JRE");
  }
  Options options;
  int next = kFirstOption;
  while (next < argc && strcmp(argv[next], "--") != 0) {
    next += takeOption(&options, argv + next);
  }
  const int passedOn = next < argc ? next + 1 : argc;
  pauseBeforeRetry = pauseNoTime;
  const int result = launchFromLaunchFile(argv[1], options.properties.data(), argc - passedOn,
                                          argv + passedOn, argv[2], options.updateUrl,
                                          options.dynamicUrl, argv[3], options.launchClass, nullptr,
                                          false, nullptr, options.from, false, nullptr);
  printf("[Driver] Result %d\n", result);
  if (options.awaited != nullptr) {
    waitFor(options.awaited);
  }
  endProcess(0);
}
