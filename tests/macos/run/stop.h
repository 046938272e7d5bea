#ifndef QUORVANE_TESTS_MACOS_RUN_STOP_H
#define QUORVANE_TESTS_MACOS_RUN_STOP_H

namespace macrun {

// How the runner ends when it cannot go on. Each prints "macrun: " and the message on standard
// error.

// The executable cannot be run: ends the process with status 126, before any of its code has run.
[[noreturn, gnu::format(printf, 1, 2)]] void refuse(const char* format, ...);

// The executable has asked for something that the runner does not have: aborts. Any thread.
[[noreturn, gnu::format(printf, 1, 2)]] void giveUp(const char* format, ...);

}  // namespace macrun

#endif
