#ifndef QUORVANE_EXTRACTOR_RUNTIME_RUN_COMMAND_H
#define QUORVANE_EXTRACTOR_RUNTIME_RUN_COMMAND_H

#include <string>

// Commands of the system that the runtime search runs. Main thread.

// Runs `command` through the shell and returns its output, without trailing blanks, carriage
// returns and line feeds, in a new block of 10000 bytes that the caller owns; longer output is
// truncated. Returns null if the shell cannot be started. Logs nothing. `command` must not contain
// text from outside unless it went through shellQuoted().
char* runCommandGetOutput(const char* command);

// Returns `text` as one shell word in which no character has a special meaning.
std::string shellQuoted(const std::string& text);

// Runs the program argv[0] with the null-terminated list `argv`, without a shell, discards its
// output, and waits for it. Returns its exit status, or -1 if a signal ended it or it could not be
// started. Logs nothing.
int runQuietly(const char* const* argv);

#endif
