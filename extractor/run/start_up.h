#ifndef QUORVANE_EXTRACTOR_RUN_START_UP_H
#define QUORVANE_EXTRACTOR_RUN_START_UP_H

struct ExtractorRun;

// The steps from the invocation to the first decision, in order. readDynamicProperties()
// (extractor/run/params_file.h) and the reading of the Tail record
// (extractor/archives/tail_stream.h) come between them. A step that fails logs why and ends the
// process with status 1. Main thread.

// Creates the splash window, without showing it.
void prepareSplash();

// Finds the absolute path of the executable and its folder, and logs them.
void resolveWrapperPaths(ExtractorRun& run);

// Closes the log section of the params file and opens that of the Tail record.
void announceTail(const ExtractorRun& run);

// Chooses the Tail's update URL, or the params file's if the Tail's is "D".
void chooseUpdateUrl(ExtractorRun& run);

// Decides whether the run is silent: by the params file, or by the Tail's word among the arguments.
void decideSilence(ExtractorRun& run);

// Adds the Tail's values to the launch properties.
void addStaticProperties(ExtractorRun& run);

// Loads the public key that archives are verified with; a missing key is not a failure.
void loadPublicKey(ExtractorRun& run);

// Makes unsigned archives be refused if the params file asks for that. Ends the process if there is
// no key to verify with.
void enforceSignatures(ExtractorRun& run);

// Finds the shared folder for the Tail's install type.
void findSharedFolder(ExtractorRun& run);

// Appends a slash to the update URL unless it ends in one, for downloads and for the launch.
void endUpdateUrlInSlash(ExtractorRun& run);

// Finds the master folder. Opening a log file in it creates it.
void nameMasterFolder(ExtractorRun& run);

// Lets the override file of the master folder replace the runtime's name.
void overrideJreName(ExtractorRun& run);

// Creates the folder for settings that all users of the application share.
void makeSharedConfigFolder(const ExtractorRun& run);

// Writes the target of the link "/proc/self/exe" into the `size` bytes at `buffer` and logs it.
// Returns 0, or -1 on failure, which is not logged. For platforms that have that link.
int getPathToExe(char* buffer, int size);

#endif
