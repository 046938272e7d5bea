#ifndef QUORVANE_EXTRACTOR_INSTALLATION_INSTALL_COMPONENT_H
#define QUORVANE_EXTRACTOR_INSTALLATION_INSTALL_COMPONENT_H

// `EXECUTABLE --install COMPONENT VERSION ARCHIVE` installs one downloaded component beside the
// installed ones. The updater fetches archives but leaves verification and installation to the
// installer.
//
// COMPONENT is the application's name in the Tail, "Quorvane" for the updater, or the runtime's
// name. VERSION has up to 18 decimal digits and no leading zero. ARCHIVE is a file of the update
// site, unchanged.
//
// A signature with the key of the installer's own Tail is required whatever the params file says.
// Everything is extracted and verified in a temporary folder, which then becomes a version folder,
// under the installers' lock. Versions only go up: a version not newer than the newest complete one
// is refused. Nothing is shown or launched.

// Returns whether these process arguments ask for that.
[[nodiscard]] bool isInstallRequest(int argc, char* const* argv);

// Does it, writes a log file, and ends the process with a status of support/process/exit_status.h:
// 0 if the version is installed. The last line on standard output, and in the log, is "Installed
// COMPONENT VERSION", or gives the reason why not. After a failure nothing of the request is left
// in the master folder; what a killed process left is removed by the next one that gets the lock.
// Main thread.
[[noreturn]] void installComponent(int argc, char** argv);

#endif
