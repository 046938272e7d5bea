#ifndef QUORVANE_EXTRACTOR_INSTALLATION_INSTALL_APP_H
#define QUORVANE_EXTRACTOR_INSTALLATION_INSTALL_APP_H

struct ExtractorRun;

// Installs the application into its version folder. An online installer carries none; both steps
// then only log that. A step that cannot go on ends the process with status 1 and a logged line.
// Main thread.

// Extracts the application's two archives into its temporary folder.
void extractApp(ExtractorRun& run);

// Makes the temporary folder run.appTemp the version folder run.appFolder, whatever the source of
// its content.
void putAppIntoPlace(ExtractorRun& run);

// The same for the application that the installer carries.
void installApp(ExtractorRun& run);

#endif
