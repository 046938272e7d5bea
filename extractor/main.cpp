#include <cstdio>
#include <cstring>

#include "extractor/extract_wrapper_tail.h"
#include "extractor/installation/install_component.h"
#include "extractor/run/silent_start.h"
#include "extractor/run/window_use.h"
#include "launcher/shell/app_shell.h"
#include "launcher/shell/application.h"
#include "platform/display.h"
#include "support/events/keep_alive.h"
#include "support/events/window_events.h"
#include "support/failure/failure.h"
#include "support/log/logging.h"
#include "support/process/exit_status.h"
#include "support/process/process_start.h"
#include "support/splash/splash.h"

// How long a URL that opened the application may take to arrive.
static const double kUrlSeconds = 0.1;

// Removes a leading "--elevated" from the arguments and returns whether it was there.
static bool takeElevatedFlag(int* argc, char** argv) {
  if (*argc < 2 || strcmp(argv[1], "--elevated") != 0) {
    return false;
  }
  for (int i = 1; i < *argc; ++i) {
    argv[i] = argv[i + 1];
  }
  --*argc;
  return true;
}

// Long work handles the application's events from here on: it has a menu, and can be asked to quit.
static void openWindows(bool isQuiet) {
  const WindowUse use = chooseWindowUse(isQuiet, isDisplayAvailable, isDisplayRequired());
  if (use == WindowUse::Refuse) {
    fputs(missingDisplayMessage(), stderr);
    failProcess(EXIT_STATUS_FAILURE, Failure::NoWindowSystem);
  }
  if (use == WindowUse::Open) {
    createApplication();
    letEventsArrive(kUrlSeconds);
    loadOSXUINib("");
    setKeepAlive(answerEvents);
  } else if (use == WindowUse::None) {
    goWithoutSplash();
  }
}

int main(int argc, char** argv) {
  beginProcess();
  if (argc < 1) {
    failProcess(EXIT_STATUS_FAILURE, Failure::NotStarted);
  }
  const bool elevated = takeElevatedFlag(&argc, argv);
  prepareApplication(argv);
  createAutoreleasePool();
  if (isInstallRequest(argc, argv)) {
    goWithoutSplash();
    installComponent(argc, argv);
  }
  if (isForConsole(argv[0])) {
    keepEarlyLines();
    logToFileAlone();
  }
  openWindows(elevated || willBeSilent(argv[0], argc, argv));
  extractWrapperTail(argv[0], argc, argv, 0, nullptr, elevated);
}
