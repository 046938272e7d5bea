#ifndef QUORVANE_LAUNCHER_JVM_STARTABLE_RUNTIME_H
#define QUORVANE_LAUNCHER_JVM_STARTABLE_RUNTIME_H

// Checks whether a runtime folder has what Java needs to start, for
// launcher/installation/version_folders.h. They cost a few stat calls if nothing is missing, and
// refuse only what definitely cannot start, because runtimes of other makers and of earlier layouts
// must keep working. They log nothing. Any thread.

// The flaw, common to all kinds of version folders, of being a file.
constexpr char NO_FOLDER_FLAW[] = "it is no folder";

// Why Java cannot run inside this process: no non-empty JVM library at any of its possible places,
// or the runtime had a modules file and lost it.
const char* flawOfRuntimeInProcess(const char* jreFolder);

// The same for a launch that starts the runtime's bin/java if Java does not run in this process.
// That java may have its JVM library elsewhere, or need none.
const char* flawOfRuntime(const char* jreFolder);

// The same without a look at the updater's marker "skipped-COMPONENT-VERSION" in QVApps/updates of
// the master folder, which the two above take for a flaw: an update brought this runtime, and the
// application failed with it. It is not to be installed again, though.
const char* damageOfRuntime(const char* jreFolder);

#endif
