#ifndef QUORVANE_TOOLS_SYSTEM_INTERRUPTION_H
#define QUORVANE_TOOLS_SYSTEM_INTERRUPTION_H

#include <sys/types.h>

// A command that makes temporary folders records the request to end and checks it from time to
// time, so that it ends like a failed one: with nothing left behind. Any thread, unless said
// otherwise.

namespace tools {

// From now on SIGINT, SIGTERM and SIGHUP are only recorded; ignored ones stay ignored. Main thread.
void noteInterruptions();

// A recorded signal also ends the child process `child`, with SIGTERM; 0 for none. One thread at a
// time has a child.
void endWhenInterrupted(pid_t child);

// Returns the last recorded signal, or 0.
int notedInterruption();

// Begins or ends a time in which everything that checks is interrupted. The thread that waits for
// the others to end calls it.
void interruptThreads(bool isWanted);

// Throws InputError if a signal was recorded or threads are interrupted.
void stopWhenInterrupted();

}  // namespace tools

#endif
