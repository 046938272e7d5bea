#ifndef QUORVANE_EXTRACTOR_RUNTIME_PROVISION_JRE_H
#define QUORVANE_EXTRACTOR_RUNTIME_PROVISION_JRE_H

struct ExtractorRun;

// Sees to it that the master folder holds a runtime, and leaves the path of its unpack200 tool in
// run.unpack200Path. The runtime is the one that the installer carries; or a suitable one of the
// system, copied; or one downloaded from the update site. Without any the process ends with status
// 1 after a logged error line. Main thread.
void provisionJre(ExtractorRun& run);

// Makes the temporary folder run.jreTemp the version folder run.jreFolder, in both views of a
// runtime, and adds ".plugin" to run.jreFolder. A runtime that cannot be put there whole ends the
// process with status 1 and a logged error line.
void putJreIntoPlace(ExtractorRun& run);

// The ways to a runtime. Each leaves it in the temporary folder run.jreTemp and its version
// folder's path in run.jreFolder.

// Extracts the runtime that the installer carries.
void extractCarriedJre(ExtractorRun& run);

// Copies the system's runtime when it passes its tests. Returns whether it did.
[[nodiscard]] bool adoptSystemJre(ExtractorRun& run);

// Downloads a runtime from the update site.
void downloadJre(ExtractorRun& run);

#endif
