#include "extractor/run.h"

#include <cstdarg>
#include <cstdlib>

#include "platform/process_end.h"
#include "support/exit_status.h"
#include "support/logging.h"

bool carriesUpdater(const ExtractorRun& run) {
  return run.tail.guVersion[0] != 0;
}

bool isOffline(const ExtractorRun& run) {
  return run.tail.appVersion[0] != 0;
}

bool isQuiet(const ExtractorRun& run) {
  return run.silent || run.elevated;
}

void failRun(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  char* text = nullptr;
  if (vasprintf(&text, format, arguments) >= 0) {
    logError("%s", text);
  }
  va_end(arguments);
  endProcess(EXIT_STATUS_FAILURE);
}
