#ifndef QUORVANE_LAUNCHER_JVM_BUNDLE_LOADER_H
#define QUORVANE_LAUNCHER_JVM_BUNDLE_LOADER_H

// Loads the executable of the bundle folder at `path` (for a runtime: its folder's companion, whose
// name ends in ".plugin") into this process. Failure is logged and otherwise without consequence;
// standard output and standard error are flushed in every case. Main thread, before
// createApplication().
void loadOSXBundle(const char* path);

#endif
