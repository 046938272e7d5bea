#ifndef QUORVANE_EXTRACTOR_RUN_PARAMS_FILE_H
#define QUORVANE_EXTRACTOR_RUN_PARAMS_FILE_H

#include <cstdio>

struct ExtractorRun;

// Reading the params file (formats/params_format.h) into the run.

// Write the two possible paths of the params file of an executable in the folder `executableDir`
// into the path buffer `path`, and return it. The second one is used if the first does not exist.
char* setFirstParamsPath(char* path, const char* executableDir);
char* setSecondParamsPath(char* path, const char* executableDir);

// Finds, opens and reads the params file; its pairs are added to the launch properties, and those
// that the Extractor understands also to run.dynamic. A missing file or marker ends the process
// with status 1 after a logged line. Main thread.
void readDynamicProperties(ExtractorRun& run);

// Reads the pairs from `params`, which is positioned after the marker.
void readParams(ExtractorRun& run, FILE* params);

#endif
