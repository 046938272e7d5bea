#ifndef QUORVANE_EXTRACTOR_INTERRUPTED_RUNS_H
#define QUORVANE_EXTRACTOR_INTERRUPTED_RUNS_H

struct ExtractorRun;

// What runs that died left in the master folder. Main thread.

// Finishes the layout of every installed runtime whose preparation was cut short, so that a folder
// that counts as complete also starts. Takes the installers' lock only when there is one.
void finishInterruptedRuntimes(const ExtractorRun& run);

// Removes temporary folders that are older than a day, each with a log line. The caller holds the
// installers' lock.
void removeOldTempFolders(const ExtractorRun& run);

#endif
