#include "extractor/run/run.h"

#include <cstdarg>
#include <cstdlib>

#include "support/failure/failure.h"
#include "support/log/logging.h"
#include "support/process/exit_status.h"

bool carriesUpdater(const ExtractorRun& run) {
  return run.tail.guVersion[0] != 0;
}

bool isOffline(const ExtractorRun& run) {
  return run.tail.appVersion[0] != 0;
}

bool isQuiet(const ExtractorRun& run) {
  return run.silent || run.elevated;
}

__attribute__((format(printf, 1, 0))) static void logErrorArguments(const char* format,
                                                                    va_list arguments) {
  char* text = nullptr;
  if (vasprintf(&text, format, arguments) >= 0) {
    logError("%s", text);
  }
}

void closeTailStream(ExtractorRun& run) {
  fclose(run.tailStream);
  run.tailStream = nullptr;
}

void failRun(Failure failure, const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  logErrorArguments(format, arguments);
  va_end(arguments);
  failProcess(EXIT_STATUS_FAILURE, failure);
}

void failRun(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  logErrorArguments(format, arguments);
  va_end(arguments);
  failProcess(EXIT_STATUS_FAILURE, Failure::InstallationFailed);
}
