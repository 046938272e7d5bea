#ifndef QUORVANE_EXTRACTOR_INSTALLATION_INSTALL_COMPONENT_H
#define QUORVANE_EXTRACTOR_INSTALLATION_INSTALL_COMPONENT_H

// `EXECUTABLE --install COMPONENT VERSION ARCHIVE` puts one downloaded component beside the
// installed ones: what the updater, which fetches archives and judges none, leaves to the
// installer.
//
// COMPONENT is the application's name in the Tail, "Quorvane" for the updater, or the runtime's
// name. VERSION has up to 18 decimal digits and no zero in front. ARCHIVE is a file of the update
// site, as it is there.
//
// A signature is required whatever the params file says, under the key of the installer's own Tail.
// Everything is extracted and verified aside, and only then becomes a version folder, under the
// installers' lock. Versions go up only: what is not newer than the newest complete one is refused.
// Nothing is shown or launched.

// Returns whether these arguments of the process ask for that.
[[nodiscard]] bool isInstallRequest(int argc, char* const* argv);

// Does it, writes a log file, and ends the process with a status of support/process/exit_status.h:
// 0 when the version is installed. The last line on standard output, and in the log, is "Installed
// COMPONENT VERSION", or says why it is not. After a failure nothing of the request is left in the
// master folder; what a killed one left there goes with the next that gets the lock. Main thread.
[[noreturn]] void installComponent(int argc, char** argv);

#endif
