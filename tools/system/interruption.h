#ifndef QUORVANE_TOOLS_SYSTEM_INTERRUPTION_H
#define QUORVANE_TOOLS_SYSTEM_INTERRUPTION_H

#include <sys/types.h>

// A command that makes temporary folders records the request to end and checks it from time to
// time, so that it ends like a failed one: with nothing left behind. Main thread.

namespace tools {

// From now on SIGINT, SIGTERM and SIGHUP are only recorded; ignored ones stay ignored.
void noteInterruptions();

// A recorded signal also ends the child process `child`, with SIGTERM; 0 for none.
void endWhenInterrupted(pid_t child);

// Returns the last recorded signal, or 0.
int notedInterruption();

// Throws InputError if a signal was recorded.
void stopWhenInterrupted();

}  // namespace tools

#endif
