#ifndef QUORVANE_EXTRACTOR_RUNTIME_PUBLISH_RUNTIME_H
#define QUORVANE_EXTRACTOR_RUNTIME_PUBLISH_RUNTIME_H

struct ExtractorRun;

// Installs the unpacked runtime in the temporary folder run.jreTemp, a bundle or a plain Java home,
// as the two folders of a runtime, the plain one being run.jreFolder; then adds ".plugin" to
// run.jreFolder and logs the steps. Main thread.
//
// Both folders are prepared and checked under temporary names. Then the plain folder is moved into
// place, with the bundle in it under the hidden name below; finally the bundle is moved from there
// into its own place. So only a complete runtime ever gets the plain folder's name, and a process
// killed in between leaves one rename to finishRuntimes()
// (extractor/installation/interrupted_runs.h). Entries that only the earlier folders of the same
// version have belong to the user or the application and are kept, except copies of java.
//
// Any failure ends the process with status 1 and a logged error line; the earlier runtime, if any,
// is complete then.
void publishRuntime(ExtractorRun& run);

// The name of the bundle inside a complete home, until it is moved to its own place.
constexpr char WAITING_BUNDLE[] = ".plugin";

#endif
