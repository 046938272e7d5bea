#ifndef QUORVANE_EXTRACTOR_RUNTIME_JRE_TEMP_H
#define QUORVANE_EXTRACTOR_RUNTIME_JRE_TEMP_H

struct ExtractorRun;

// What is done with a runtime in the temporary folder run.jreTemp, wherever it came from. Main
// thread.

// Writes the class data archive of the runtime in run.jreTemp; its result is not looked at.
void regenerateClassData(const ExtractorRun& run);

// Ends the process with a logged error line unless the folder run.jreTemp exists and contains a
// Java executable; the folder is removed then.
void requireJavaInTemp(ExtractorRun& run);

#endif
