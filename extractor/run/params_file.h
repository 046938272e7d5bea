#ifndef QUORVANE_EXTRACTOR_RUN_PARAMS_FILE_H
#define QUORVANE_EXTRACTOR_RUN_PARAMS_FILE_H

#include <cstdio>

struct ExtractorRun;

// The params file beside the executable: properties that may be changed without signing the
// installer again.
//
//   file  = *byte marker count *( name value )
//   count = field of decimal text      (number of pairs)
//   name  = field                      (limit 1024)
//   value = field                      (limit 200000)

// The read limit of a value in bytes.
constexpr int PARAM_VALUE_LIMIT = 200000;

// Length of the marker in bytes, and the marker.
constexpr int PARAMS_MARKER_SIZE = 64;
extern const unsigned char paramsMarker[PARAMS_MARKER_SIZE];

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
