#ifndef QUORVANE_EXTRACTOR_FOLDERS_H
#define QUORVANE_EXTRACTOR_FOLDERS_H

struct ExtractorRun;

// Folders of the master folder: temporary ones that an installation fills, and version folders that
// they become. Main thread.

// Writes the name of a new temporary folder of the master folder into the path buffer `dst`: one
// that nothing stands at, waiting for the next second where the name is taken.
void nameTempFolder(const ExtractorRun& run, char* dst);

// Creates the temporary folder `path` as makeDir() does, under a new name written back to `path`
// when the name was taken since. Returns 0, or non-zero when it cannot be created: what stands
// there already, a link above all, is never taken for it.
[[nodiscard]] int createTempFolder(const ExtractorRun& run, char* path);

// Makes the temporary folder `temp` the version folder `target`. One that stands there already is
// replaced, never mixed with the new content: in one step where the system can do that, elsewhere
// it stands aside until the new one is complete; what stands there and is no folder is removed
// first, a link without following it. A file system that only lets folders be copied
// gets a copy that is compared with its source. When `target` cannot be made complete, what stood
// there before stands there again, `temp` is removed, and the process ends with status 1 and a
// logged error line that names `component`.
void moveIntoPlace(const ExtractorRun& run, const char* component, const char* temp,
                   const char* target);

#endif
