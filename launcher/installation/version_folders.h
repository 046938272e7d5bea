#ifndef QUORVANE_LAUNCHER_INSTALLATION_VERSION_FOLDERS_H
#define QUORVANE_LAUNCHER_INSTALLATION_VERSION_FOLDERS_H

// Version folders: an extracted component lies in the master folder under the name
//
//   prefix '-' component '-' version '-' rest        as in Quorvane-Mac64JRE-1407-complete
//
// A name without its third '-' belongs to an extraction that was not completed. Prefix and rest are
// not looked at, so a component's name cannot hold a '-'.

// Compares the component in `folderName` with `componentName`. Returns 0 when they are equal, else
// the strcmp() result; -1 when the name has fewer than two '-'. Any thread.
int checkAppFolderName(const char* folderName, const char* componentName);

// Returns the version in `folderName` as atol() converts it, or -1 when the name has fewer than
// three '-'. Any thread.
long pickVersionFromAppFolderName(const char* folderName);

// Returns a new text, owned by the caller, with the name of the entry of `masterFolder` that holds
// the highest version of `componentName`, the first by name among equals; null when there is none
// or the folder cannot be read. Logs every match and every better one. Any thread.
char* pickAndAllocLatestFromMaster(const char* masterFolder, const char* componentName);

// A look at the version folder with the given full path. Returns null when it may well start, else
// a constant text, as "its launch file is missing", that says why it surely cannot. Where the
// system cannot tell, as after a read error, it may start.
using FlawOfFolder = const char* (*)(const char* folder);

// As pickAndAllocLatestFromMaster(), but passes over what `flawOf` finds a flaw in, with a logged
// line that says which; null when nothing else is left. Any thread.
char* pickAndAllocLatestThatStarts(const char* masterFolder, const char* componentName,
                                   FlawOfFolder flawOf);

// The same, but gives the newest one where all have a flaw: for who has nothing to put in its
// place, and can as well try it.
char* pickAndAllocLatestToLaunch(const char* masterFolder, const char* componentName,
                                 FlawOfFolder flawOf);

#endif
