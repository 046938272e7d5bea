#ifndef QUORVANE_EXTRACTOR_RUNTIME_RUN_COMMAND_H
#define QUORVANE_EXTRACTOR_RUNTIME_RUN_COMMAND_H

#include <string>

// Commands of the system that the runtime search runs. Main thread.

// Runs `command` through the shell and returns what it printed, without trailing blanks, carriage
// returns and line feeds, in a new block of 10000 bytes that the caller owns; the output is cut
// where it no longer fits. Returns null when the shell cannot be started. Logs nothing. No text
// from outside may stand in `command` unless it went through shellQuoted().
char* runCommandGetOutput(const char* command);

// Returns `text` as one word for the shell in which no character has a meaning.
std::string shellQuoted(const std::string& text);

// Runs the program words[0] with the null-terminated list `words`, without a shell, its output
// thrown away, and waits for it. Returns its exit status, or -1 when it did not end by itself or
// could not be started. Logs nothing.
int runQuietly(const char* const* words);

#endif
