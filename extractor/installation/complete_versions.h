#ifndef QUORVANE_EXTRACTOR_INSTALLATION_COMPLETE_VERSIONS_H
#define QUORVANE_EXTRACTOR_INSTALLATION_COMPLETE_VERSIONS_H

struct ExtractorRun;

// Finds the highest version of the component `name` of which the master folder holds a folder that
// has what a start needs: a runtime (run.jreName) its bin/java and its JVM library, every other
// component a whole launch file; -1 when there is none. A damaged one does not count, so that its
// number can be installed again; a logged line names it and its flaw. Where the system cannot tell
// it counts. Returns false when the master folder cannot be listed: then versions might go down.
// Main thread.
[[nodiscard]] bool findNewestComplete(const ExtractorRun& run, const char* name, long* version);

#endif
