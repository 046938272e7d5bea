#ifndef QUORVANE_TOOLS_SYSTEM_INTERRUPTION_H
#define QUORVANE_TOOLS_SYSTEM_INTERRUPTION_H

#include <sys/types.h>

// A command that makes temporary folders notes that it is to end and looks at that from time to
// time, so that it ends like one that fails: with nothing left behind. Main thread.

namespace tools {

// From now on SIGINT, SIGTERM and SIGHUP are noted and do nothing else; those that are ignored stay
// so.
void noteInterruptions();

// A noted signal also ends the child process `child`, as SIGTERM does; 0 for none.
void endWhenInterrupted(pid_t child);

// Returns the signal that was noted last, or 0.
int notedInterruption();

// Throws InputError when a signal was noted.
void stopWhenInterrupted();

}  // namespace tools

#endif
