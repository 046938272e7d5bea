#ifndef QUORVANE_EXTRACTOR_FOLDERS_H
#define QUORVANE_EXTRACTOR_FOLDERS_H

struct ExtractorRun;

// Folders of the master folder: temporary ones that an installation fills, and version folders that
// they become. Main thread.

// Returns whether `path` is a folder, a link not followed. Logs nothing.
[[nodiscard]] bool isFolder(const char* path);

// Returns whether `path` is a plain file that may be executed. Logs nothing.
[[nodiscard]] bool isExecutable(const char* path);

// Ends the process with status 1 and a logged error line that names `component` when the temporary
// folder `temp` holds no launch file, without which its version folder could not be started.
void requireLaunchFile(const char* component, const char* temp);

// Deletes the folder `path` and all in it; a missing one is no failure. Logs what it deletes.
void removeFolder(const char* path);

// Writes the name of a new temporary folder of the master folder into the path buffer `dst`: one
// that nothing stands at, waiting for the next second where the name is taken.
void nameTempFolder(const ExtractorRun& run, char* dst);

// Creates the temporary folder `path` as makeDir() does, under a new name written back to `path`
// when the name was taken since. Returns 0, or non-zero when it cannot be created.
[[nodiscard]] int createTempFolder(const ExtractorRun& run, char* path);

// Makes the temporary folder `temp` the version folder `target`. One that stands there already is
// replaced in one step where the system can do that. A file system that only lets folders be copied
// gets a copy that is compared with its source. Afterwards `temp` is gone. When `target` cannot be
// made complete it is removed and the process ends with status 1 and a logged error line that names
// `component`.
void moveIntoPlace(const ExtractorRun& run, const char* component, char* temp, const char* target);

#endif
