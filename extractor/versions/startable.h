#ifndef QUORVANE_EXTRACTOR_VERSIONS_STARTABLE_H
#define QUORVANE_EXTRACTOR_VERSIONS_STARTABLE_H

struct ExtractorRun;

// The newest version folders that have what a start needs. One that definitely cannot start does
// not count, so that an installer that carries the component reinstalls it. Every function returns
// a new text, owned by the caller, with the folder's name in the master folder, or null, and logs
// why a newer one is skipped. Main thread.

// The updater and the runtime for the decision. An installer that carries no updater cannot repair
// anything: if none can start it gets the newest.
char* allocInstalledUpdater(const ExtractorRun& run);
char* allocInstalledRuntime(const ExtractorRun& run);

// The application for the decision.
char* allocInstalledApp(const ExtractorRun& run);

// The updater to launch after an installation: where none can start, the newest.
char* allocUpdaterToLaunch(const char* masterFolder);

#endif
