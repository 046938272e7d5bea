#ifndef QUORVANE_EXTRACTOR_VERSIONS_FOLDERS_H
#define QUORVANE_EXTRACTOR_VERSIONS_FOLDERS_H

#include <string>
#include <vector>

// Folders in the master folder: an installation fills temporary ones, which become version folders.
// Main thread.

// Writes the path of a new temporary folder in the master folder into the path buffer `dst`. Waits
// for the next second, up to two seconds, while the name is taken.
void nameTempFolder(const char* masterFolder, char* dst);

// Creates the temporary folder `path` as makeDir() does. If the name has been taken meanwhile, uses
// a new one and writes it to `path`. Returns 0, or non-zero if it cannot be created: anything that
// already exists, a link above all, is not used.
[[nodiscard]] int createTempFolder(const char* masterFolder, char* path);

// Ends the process with status 1 and a logged error line that names `component` unless the
// temporary folder `temp` contains a launch file that is a regular file; removes the folder first.
void requireLaunchFile(const char* component, const char* temp);

// Ends the process with status 1 and a logged error line that names `component` unless the
// temporary folder `temp` is still there.
void requireTempFolder(const char* component, const char* temp);

// Whether a folder that cannot be renamed may be copied. A copy has files in place of links.
enum class ByCopy { Allowed, Never };

// Makes the temporary folder `temp` the version folder `target`. An existing folder is replaced: by
// an exchange where the system has one, else it is set aside until the new one is complete. Entries
// that only the existing folder has were made by the application or its user, because no archive
// says what an earlier one installed: they are added to the new folder first. Names that both have
// are the new one's. `leftOut` lists entries of the existing folder, by their paths in it, that
// belong to an installation and are not added.
//
// Anything else than a folder at `target` is removed first, a link without following it. On a file
// system that can only copy folders the copy is compared with its source, unless `byCopy` forbids
// copies. If `target` cannot be completed, or something of the existing folder cannot be kept, that
// folder is kept or restored, `temp` is removed, and the process ends with status 1 and a logged
// error line that names `component`. A folder that cannot be restored stays in the master folder as
// "QuorvaneKept-...", which a logged line names and no later run removes.
void moveIntoPlace(const char* masterFolder, const char* component, const char* temp,
                   const char* target, const std::vector<std::string>& leftOut = {},
                   ByCopy byCopy = ByCopy::Allowed);

// Removes anything at `target` that is not a folder, a link without following it, and logs that.
// Ends the process with status 1 and a logged error line that names `component` if that fails.
void removeObstacle(const char* masterFolder, const char* component, const char* target);

#endif
