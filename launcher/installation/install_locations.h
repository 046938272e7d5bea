#ifndef QUORVANE_LAUNCHER_INSTALLATION_INSTALL_LOCATIONS_H
#define QUORVANE_LAUNCHER_INSTALLATION_INSTALL_LOCATIONS_H

// The location of an application's master folder, and the name of its JRE.

// Returns a new path buffer, owned by the caller, with the folder that contains the master folders
// of applications of `installType`: "/Library/Application Support" for "perm_all", else
// Library/Application Support in the home folder that the password database gives for the real user
// id, created if missing. Logs the kind of install and the home folder. Without a home folder logs
// that and ends the process with EXIT_STATUS_FAILURE. Main thread.
char* locateSharedDirectory(const char* installType);

// Returns a new text, owned by the caller, with the JRE's component name: DEFAULT_JRE_NAME, or the
// content of the file QVApps/JreNameOverride in `masterFolder`, unless that is "-". Logs which.
// Main thread.
char* getJREName(const char* masterFolder);

#endif
