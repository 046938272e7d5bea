#ifndef QUORVANE_EXTRACTOR_INSTALLATION_INTERRUPTED_RUNS_H
#define QUORVANE_EXTRACTOR_INSTALLATION_INTERRUPTED_RUNS_H

struct ExtractorRun;

// What runs that died left in the master folder. Main thread.

// Finishes the layout of every installed runtime whose preparation was cut short, so that a folder
// that counts as complete also starts. Takes the installers' lock when there is one, and never
// waits for it: where another installer has it, that one may be laying them out, and nothing is
// done.
void finishInterruptedRuntimes(const ExtractorRun& run);

// The same for a caller that holds the lock.
void finishRuntimesUnderLock(const ExtractorRun& run);

// Removes the temporary folders that no running installer is using, each with a log line. The
// caller holds the installers' lock.
void removeAbandonedTempFolders(const ExtractorRun& run);

#endif
