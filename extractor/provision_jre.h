#ifndef QUORVANE_EXTRACTOR_PROVISION_JRE_H
#define QUORVANE_EXTRACTOR_PROVISION_JRE_H

struct ExtractorRun;

// Sees to it that the master folder holds a runtime, and leaves the path of its unpack200 tool in
// run.unpack200Path. The runtime is the one that the installer carries; or a suitable one of the
// system, copied; or one downloaded from the update site. Without any the process ends with status
// 1 after a logged error line. Main thread.
void provisionJre(ExtractorRun& run);

// The ways to a runtime. Each leaves it in the temporary folder run.jreTemp and its version
// folder's path in run.jreFolder.

// Extracts the runtime that the installer carries.
void extractCarriedJre(ExtractorRun& run);

// Copies the system's runtime when it passes its tests. Returns whether it did.
[[nodiscard]] bool adoptSystemJre(ExtractorRun& run);

// Downloads a runtime from the update site.
void downloadJre(ExtractorRun& run);

// Prepares the bundle `bundle`, a version folder, with initOSXJRE(). An earlier runtime of the same
// version, or what else stands in its place, in `earlierHome`, null when there is none, is taken
// out of its way first, because its entries and the new ones must not mix, in one step where the
// system can do that, and removed once the new one stands. Where the new one's Java did not get to
// its place but the earlier one had one, that comes back, linked into the bundle. Returns whether
// it did not have to.
[[nodiscard]] bool layOutRuntime(const ExtractorRun& run, const char* bundle,
                                 const char* earlierHome);

// Writes the class data archive of the runtime in run.jreTemp; its result is not looked at.
void regenerateClassData(const ExtractorRun& run);

// Ends the process with a logged error line unless the folder run.jreTemp stands and holds a Java
// executable; what stands of it is removed.
void requireJavaInTemp(ExtractorRun& run);

#endif
