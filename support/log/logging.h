#ifndef QUORVANE_SUPPORT_LOG_LOGGING_H
#define QUORVANE_SUPPORT_LOG_LOGGING_H

#include <cstdint>
#include <cstdio>

// The one log of the process. A message goes to the log file (when one is set), to standard output
// and to the system log. Lines in the file and on standard output begin with the milliseconds that
// passed since the previous call ended: a plus sign, the number padded with blanks to 8 characters,
// one blank. Messages begin with a bracketed tag and end with their own newline; the log adds none.
//
// No function here reports its own failures. Only the use of the file is locked: calls from several
// threads may interleave their lines.

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

// From now on messages are kept for a log file to be set later, up to 256 KB. Main thread, before
// any other call.
void keepEarlyLines();

// From now on messages go to the log file and nowhere else; without a file they are lost, unless
// keepEarlyLines() keeps them. What others write to standard output is lost until
// closeLoggedFile(), which a launch calls before the program runs. Main thread, before any other
// call.
void logToFileAlone();

// After logToFileAlone(), writes the messages that keepEarlyLines() or closeLoggedFile() keeps to
// standard error: for a process that ends with a failure before it has a log file, or after it.
// Otherwise does nothing. Any thread.
void revealKeptLines();

// Makes `file` (or null) the log file; the previous one is not closed. Messages kept by
// keepEarlyLines() are written to the file first, or, unless nothing else is logged to, dropped if
// it is null. The log owns the stream until closeLoggedFile(). Main thread.
void setFileToLogTo(FILE* file);

// Logs that the file is being closed, then closes it if one is set. Gives back the standard output
// that logToFileAlone() took; later messages are then kept as keepEarlyLines() does, for
// revealKeptLines(). Any thread.
void closeLoggedFile();

// Creates `baseDir` and its folder "logs" and opens a new log file there, named "Wrapper-", the
// local time with milliseconds and ".log". Logs the path to the sinks that were set before the
// call. If the file cannot be opened, the log goes on without one. Main thread, once.
void setupFileLogging(const char* baseDir);

// The same for the Launcher: the name begins with "Launcher-". Removes the user's older files of
// that name except the newest LAUNCHER_LOG_COUNT - 1, and no other files.
void setupLauncherLogging(const char* baseDir);
constexpr int LAUNCHER_LOG_COUNT = 20;

// The same for an installer that installs one component, as an update does repeatedly: the name
// begins with "Install-", and INSTALL_LOG_COUNT are kept.
void setupInstallLogging(const char* baseDir);
constexpr int INSTALL_LOG_COUNT = 20;

// Returns the path of the log file that this process has opened in a folder, even after it was
// closed; empty if there is none. The text lives as long as the process. Any thread.
const char* loggedFilePath();

// Logs the current working folder. Any thread.
void printWorkingDir();

#endif
