#ifndef QUORVANE_LAUNCHER_INSTALLATION_VERSION_FOLDERS_H
#define QUORVANE_LAUNCHER_INSTALLATION_VERSION_FOLDERS_H

// Version folders: an extracted component is in the master folder under the name
//
//   prefix '-' component '-' version '-' rest        as in Quorvane-Mac64JRE-1407-complete
//
// A name without a third '-' belongs to an extraction that was not completed. Prefix and rest are
// ignored, so a component's name cannot contain a '-'.

// Compares the component in `folderName` with `componentName`. Returns 0 if they are equal, else
// the strcmp() result; -1 if the name has fewer than two '-'. Any thread.
int checkAppFolderName(const char* folderName, const char* componentName);

// Returns the version in `folderName` as atol() converts it, or -1 if the name has fewer than three
// '-'. Any thread.
long pickVersionFromAppFolderName(const char* folderName);

// Returns a new text, owned by the caller, with the name of the entry of `masterFolder` that has
// the highest version of `componentName`, the first by name among equals; null if there is none or
// the folder cannot be read. Logs every match, the highest version first, and the choice. Any
// thread.
char* pickAndAllocLatestFromMaster(const char* masterFolder, const char* componentName);

// Checks the version folder with the given full path. Returns null if it may start, else a constant
// text such as "its launch file is missing" that says why it definitely cannot. If the system
// cannot tell, as after a read error, it may start.
using FlawOfFolder = const char* (*)(const char* folder);

// As pickAndAllocLatestFromMaster(), but skips folders in which `flawOf` finds a flaw, with a
// logged line that says which; null if nothing else is left. Any thread.
char* pickAndAllocLatestThatStarts(const char* masterFolder, const char* componentName,
                                   FlawOfFolder flawOf);

// The same, but returns the newest one if all have a flaw: for callers that cannot replace it, and
// may as well try it.
char* pickAndAllocLatestToLaunch(const char* masterFolder, const char* componentName,
                                 FlawOfFolder flawOf);

#endif
