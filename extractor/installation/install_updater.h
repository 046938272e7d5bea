#ifndef QUORVANE_EXTRACTOR_INSTALLATION_INSTALL_UPDATER_H
#define QUORVANE_EXTRACTOR_INSTALLATION_INSTALL_UPDATER_H

struct ExtractorRun;

// Installs the GenericUpdater into its version folder; the steps run in this order. A step that
// cannot go on ends the process with status 1 and a logged line. Main thread.

// Sets the paths of the version folders and temporary folders of the updater and the application.
void nameInstallFolders(ExtractorRun& run);

// Extracts the first of the updater's archives, the LZMA tool, into run.guTemp and stores the
// tool's path in run.lzmaPath.
void extractLzmaTool(ExtractorRun& run);

// Extracts the updater's four archives into its temporary folder; the first contains the LZMA tool
// that the others need.
void extractUpdater(ExtractorRun& run);

// Makes the temporary folder the updater's version folder.
void installUpdater(ExtractorRun& run);

// Gives the splash its image and shows it, unless the run is quiet.
void openSplash(ExtractorRun& run);

#endif
