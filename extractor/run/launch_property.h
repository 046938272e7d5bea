#ifndef QUORVANE_EXTRACTOR_RUN_LAUNCH_PROPERTY_H
#define QUORVANE_EXTRACTOR_RUN_LAUNCH_PROPERTY_H

struct ExtractorRun;

// Adds a property to the run's launch properties. A property that does not fit ends the process
// with a logged error line. Main thread.
void addStaticLaunchProperty(ExtractorRun& run, const char* key, const char* value);
void addDynamicLaunchProperty(ExtractorRun& run, const char* key, const char* value);

#endif
