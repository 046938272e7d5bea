#include <cstring>

#include "extractor/extract_wrapper_tail.h"
#include "launcher/application.h"
#include "launcher/url_events.h"
#include "platform/display.h"
#include "support/exit_status.h"

// How long a URL that opened the application may take to arrive.
static const double kUrlSeconds = 0.1;

// Removes a leading "--elevated" from the arguments and returns whether it stood there.
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

int main(int argc, char** argv) {
  if (argc < 1) {
    return EXIT_STATUS_FAILURE;
  }
  const bool elevated = takeElevatedFlag(&argc, argv);
  prepareApplication(argv);
  createAutoreleasePool();
  // A silent or elevated run works without a window system.
  if (isDisplayAvailable()) {
    createApplication();
    registerOSXEventListener();
    letEventsArrive(kUrlSeconds);
  }
  extractWrapperTail(argv[0], argc, argv, 0, nullptr, elevated);
}
