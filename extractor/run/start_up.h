#ifndef QUORVANE_EXTRACTOR_RUN_START_UP_H
#define QUORVANE_EXTRACTOR_RUN_START_UP_H

struct ExtractorRun;

// The steps between the invocation and the first decision, in their order; between them stand
// readDynamicProperties() (extractor/run/params_file.h) and the reading of the Tail record
// (extractor/archives/tail_stream.h). A step that cannot go on logs why and ends the process with
// status 1. Main thread.

// Creates the splash window, without showing it.
void prepareSplash();

// Finds the absolute path of the executable and its folder, and logs them.
void resolveWrapperPaths(ExtractorRun& run);

// Closes the log section of the params file and opens that of the Tail record.
void announceTail(const ExtractorRun& run);

// Decides between the Tail's update URL and, where that is "D", the params file's.
void chooseUpdateUrl(ExtractorRun& run);

// Decides whether the run is silent: by the params file, or by the Tail's word among the arguments.
void decideSilence(ExtractorRun& run);

// Adds what the Tail says to the launch properties.
void addStaticProperties(ExtractorRun& run);

// Loads the public key that archives are verified with; none is no failure.
void loadPublicKey(ExtractorRun& run);

// Switches on that unsigned archives are refused, when the params file asks for it. Ends the
// process when there is no key to verify with.
void enforceSignatures(ExtractorRun& run);

// Finds the shared folder for the Tail's install type.
void findSharedFolder(ExtractorRun& run);

// Ends the update URL in a slash, for downloads and for the launch.
void endUpdateUrlInSlash(ExtractorRun& run);

// Finds the master folder. A log file that is opened in it creates it.
void nameMasterFolder(ExtractorRun& run);

// Lets the override file of the master folder replace the runtime's name.
void overrideJreName(ExtractorRun& run);

// Creates the folder for settings that all users of the application share.
void makeSharedConfigFolder(const ExtractorRun& run);

// Writes the target of the link "/proc/self/exe" into the `size` bytes at `buffer` and logs it.
// Returns 0, or -1 on failure, which is not logged. For platforms that have that link.
int getPathToExe(char* buffer, int size);

#endif
