#ifndef QUORVANE_EXTRACTOR_VERSIONS_DECISION_H
#define QUORVANE_EXTRACTOR_VERSIONS_DECISION_H

struct ExtractorRun;

enum class Decision {
  Launch,   // what is installed is at least as new as what the installer carries
  Install,  // something has to be extracted
};

// Compares what the installer carries with what is installed, and logs the result. What definitely
// cannot start (extractor/versions/startable.h) counts as not installed. Fills in run.latestGU and
// run.latestJRE. If something must be extracted and the installer carries no updater, the process
// ends with status 1 after a logged line. Main thread.
Decision decide(ExtractorRun& run);

#endif
