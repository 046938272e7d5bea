#ifndef QUORVANE_EXTRACTOR_INSTALLATION_INTERRUPTED_RUNS_H
#define QUORVANE_EXTRACTOR_INSTALLATION_INTERRUPTED_RUNS_H

// What runs that died left in the master folder. Main thread.

// Makes the rename that a run which died between the two folders of a runtime left: that of a
// bundle which waits in its home, or of a home whose bundle is installed already. Takes the
// installers' lock when there is one to make, and never waits for it: where another installer has
// it, that one may be at it, and nothing is done.
void finishInterruptedRuntimes(const char* masterFolder);

// The same for a caller that holds the lock.
void finishRuntimesUnderLock(const char* masterFolder);

// Removes the temporary folders that no running installer is using, each with a log line. The
// caller holds the installers' lock.
void removeAbandonedTempFolders(const char* masterFolder);

#endif
