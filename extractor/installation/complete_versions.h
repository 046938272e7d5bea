#ifndef QUORVANE_EXTRACTOR_INSTALLATION_COMPLETE_VERSIONS_H
#define QUORVANE_EXTRACTOR_INSTALLATION_COMPLETE_VERSIONS_H

// Finds the highest version of the component `name` in `masterFolder` whose folder contains what a
// start needs: a runtime its bin/java and its JVM library, other components a complete launch file.
// Sets `*version` to -1 if there is none. A damaged version does not count, so that its number can
// be installed again; a logged line names it and its flaw. One that the system cannot examine
// counts. Returns false if the master folder cannot be listed, because versions might then go down.
// Main thread.
[[nodiscard]] bool findNewestComplete(const char* masterFolder, const char* name, bool isRuntime,
                                      long* version);

#endif
