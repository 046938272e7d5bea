#ifndef QUORVANE_SUPPORT_FAILURE_FAILURE_TEXTS_H
#define QUORVANE_SUPPORT_FAILURE_FAILURE_TEXTS_H

#include <string>

#include "support/failure/failure.h"

// What an alert says. Any thread.

// Returns the sentence that says what failed in the application `name`.
std::string failureMessage(Failure failure, const std::string& name);

// Returns the sentence that says what to do and, on a separate line, where the log file is; that
// line is omitted if `logFile` is empty.
std::string failureAdvice(Failure failure, const std::string& name, const std::string& logFile);

#endif
