#ifndef QUORVANE_SUPPORT_LOGGING_H
#define QUORVANE_SUPPORT_LOGGING_H

#include <cstdint>
#include <cstdio>

// The one log of the process. A message goes to the log file (when one is set), to standard output
// and to the system log. Lines in the file and on standard output begin with the milliseconds that
// passed since the previous call ended: a plus sign, the number padded with blanks to 8 characters,
// one blank. Messages begin with a bracketed tag and end with their own newline; the log adds none.
//
// No function here reports its own failures, and none takes a lock: calls from several threads may
// interleave their lines.

// The open log file, or null. Set by setFileToLogTo(), cleared by closeLoggedFile().
extern FILE* fileToLogTo;

// Wall clock in milliseconds since the epoch at the end of the previous call; 0 before the first.
extern uint64_t lastTimestamp;

// Writes one printf-style message to every sink and flushes them. Any thread.
void logMessage(const char* format, ...) __attribute__((format(printf, 1, 2)));

// Writes the message as logMessage() does, between two rule lines of 43 asterisks. Any thread.
void logError(const char* format, ...) __attribute__((format(printf, 1, 2)));

// Writes the three-line banner that opens the section `name`. Any thread.
void logStartSection(const char* name);

// Writes the three-line banner that closes the section `name`. Any thread.
void logEndSection(const char* name);

// Makes `file` (or null) the log file; the previous one is not closed. The stream is owned by the
// log until closeLoggedFile(). Main thread.
void setFileToLogTo(FILE* file);

// Logs that the file is being closed, then closes it if one is set. Any thread, while no other
// logs.
void closeLoggedFile();

// Creates `baseDir` and its folder "logs" and opens a new log file there, named "Wrapper-", the
// local time with milliseconds and ".log". Logs the path to the sinks that stand before the call.
// When the file cannot be opened the log goes on without one. Main thread, once.
void setupFileLogging(const char* baseDir);

// Logs the current working folder. Any thread.
void printWorkingDir();

#endif
