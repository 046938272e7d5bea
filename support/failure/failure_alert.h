#ifndef QUORVANE_SUPPORT_FAILURE_FAILURE_ALERT_H
#define QUORVANE_SUPPORT_FAILURE_FAILURE_ALERT_H

#include "support/failure/failure.h"

// What an alert is about: the application's name, empty for the main bundle's or the process's, and
// the path of the log file, empty when there is none.
struct FailureAlert {
  Failure failure;
  const char* name;
  const char* logFile;
};

// Shows the alert and returns when it has been closed; with a log file it has a button that shows
// that file in its folder. Does nothing where no window system can be reached. Logs nothing. Any
// thread, as failProcess().
void showFailureAlert(const FailureAlert& alert);

#endif
