#ifndef QUORVANE_SUPPORT_FAILURE_FAILURE_ALERT_H
#define QUORVANE_SUPPORT_FAILURE_FAILURE_ALERT_H

#include "support/failure/failure.h"

// What an alert is about: the application's name, empty for that of the main bundle or the process,
// and the path of the log file, empty if there is none.
struct FailureAlert {
  Failure failure;
  const char* name;
  const char* logFile;
};

// Shows the alert and returns when it has been closed; with a log file it has a button that shows
// that file in its folder. Does nothing if no window system is available. Logs nothing. Any thread,
// like failProcess().
void showFailureAlert(const FailureAlert& alert);

#endif
