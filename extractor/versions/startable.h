#ifndef QUORVANE_EXTRACTOR_VERSIONS_STARTABLE_H
#define QUORVANE_EXTRACTOR_VERSIONS_STARTABLE_H

struct ExtractorRun;

// The newest version folders that have what a start needs; one that surely cannot start does not
// count, so that an installer that carries the component brings it anew. Every function returns a
// new text, owned by the caller, with the folder's name in the master folder, or null, and logs why
// a newer one is passed over. Main thread.

// The updater and the runtime to decide with. An installer that carries no updater can bring
// nothing anew: where none can start it gets the newest.
char* allocInstalledUpdater(const ExtractorRun& run);
char* allocInstalledRuntime(const ExtractorRun& run);

// The application to decide with.
char* allocInstalledApp(const ExtractorRun& run);

// The updater to launch after an installation: where none can start, the newest.
char* allocUpdaterToLaunch(const char* masterFolder);

#endif
