#ifndef QUORVANE_EXTRACTOR_VERSIONS_FOLDERS_H
#define QUORVANE_EXTRACTOR_VERSIONS_FOLDERS_H

#include <string>
#include <vector>

// Folders of the master folder: temporary ones that an installation fills, and version folders that
// they become. Main thread.

// Writes the name of a new temporary folder of the master folder into the path buffer `dst`: one
// that nothing stands at, waiting for the next second where the name is taken.
void nameTempFolder(const char* masterFolder, char* dst);

// Creates the temporary folder `path` as makeDir() does, under a new name written back to `path`
// when the name was taken since. Returns 0, or non-zero when it cannot be created: what stands
// there already, a link above all, is never taken for it.
[[nodiscard]] int createTempFolder(const char* masterFolder, char* path);

// Ends the process with status 1 and a logged error line that names `component` unless the
// temporary folder `temp` holds a launch file as a plain file; the folder is removed first.
void requireLaunchFile(const char* component, const char* temp);

// Ends the process with status 1 and a logged error line that names `component` unless the
// temporary folder `temp` is still there.
void requireTempFolder(const char* component, const char* temp);

// Whether a folder that cannot be renamed may be copied. A copy has files in place of links.
enum class ByCopy { Allowed, Never };

// Makes the temporary folder `temp` the version folder `target`. One that exists already is
// replaced: in one step where the system can do that, elsewhere it waits aside until the new one is
// complete. What the earlier one holds and the new one lacks was made by the application or its
// user, as no archive says what an earlier one brought: it is there at the same place afterwards,
// and is added to the new one before the step. Names that both hold are the new one's. `leftOut`
// names entries of the earlier one, by their paths in it, that are an installation's own and are
// not taken along.
//
// What is there and is no folder is removed first, a link without following it. A file system that
// only lets folders be copied gets a copy that is compared with its source, unless `byCopy` forbids
// that. When `target` cannot be made complete, or something of the earlier one cannot be kept, that
// is there again, or still is, `temp` is removed, and the process ends with status 1 and a logged
// error line that names `component`. An earlier one that cannot be put back stays in the master
// folder as "QuorvaneKept-...", which a logged line names and no later run removes.
void moveIntoPlace(const char* masterFolder, const char* component, const char* temp,
                   const char* target, const std::vector<std::string>& leftOut = {},
                   ByCopy byCopy = ByCopy::Allowed);

// Removes what is at `target` and is no folder, a link without following it, with a log line. Ends
// the process with status 1 and a logged error line that names `component` where that fails.
void removeObstacle(const char* masterFolder, const char* component, const char* target);

#endif
