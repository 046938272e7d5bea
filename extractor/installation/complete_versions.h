#ifndef QUORVANE_EXTRACTOR_INSTALLATION_COMPLETE_VERSIONS_H
#define QUORVANE_EXTRACTOR_INSTALLATION_COMPLETE_VERSIONS_H

struct ExtractorRun;

// Finds the highest version of the component `name` of which the master folder holds a folder that
// has what a start needs: a runtime (run.jreName) its bin/java, every other component its launch
// file; -1 when there is none. Returns false when the master folder cannot be listed: then versions
// might go down. Logs nothing. Main thread.
[[nodiscard]] bool findNewestComplete(const ExtractorRun& run, const char* name, long* version);

#endif
