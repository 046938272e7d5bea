#ifndef QUORVANE_EXTRACTOR_RUNTIME_PUBLISH_RUNTIME_H
#define QUORVANE_EXTRACTOR_RUNTIME_PUBLISH_RUNTIME_H

struct ExtractorRun;

// Installs the unpacked runtime in the temporary folder run.jreTemp, a bundle or a plain Java home,
// as the two folders of a runtime whose plain one is run.jreFolder; then adds ".plugin" to
// run.jreFolder and logs the steps. Main thread.
//
// Both folders are prepared and checked under temporary names. Then the plain folder is put into
// its place, with the bundle in it under the hidden name below, and at last the bundle moves from
// there to its own place. So a plain folder's name is only ever given to a whole runtime, and a
// process that dies on the way leaves one rename, which finishRuntimes() makes
// (extractor/installation/interrupted_runs.h). What earlier folders of the same version hold and
// the new ones lack is its user's, or the application's, and is kept, but for copies of java.
//
// What cannot be prepared, checked or put into place ends the process with status 1 and a logged
// error line; the earlier runtime, if any, is whole then.
void publishRuntime(ExtractorRun& run);

// The bundle's name in a home that is whole and checked, until it has its own place.
constexpr char WAITING_BUNDLE[] = ".plugin";

#endif
