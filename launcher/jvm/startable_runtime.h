#ifndef QUORVANE_LAUNCHER_JVM_STARTABLE_RUNTIME_H
#define QUORVANE_LAUNCHER_JVM_STARTABLE_RUNTIME_H

// Whether a runtime folder has what Java cannot start without: looks for
// launcher/installation/version_folders.h. They cost a few stats where nothing is missing, and
// refuse only what surely cannot start, as runtimes of other makers and of earlier layouts must go
// on working. They log nothing. Any thread.

// What every kind of version folder has in common that is a file.
constexpr char NO_FOLDER_FLAW[] = "it is no folder";

// What keeps Java from running inside this process: no JVM library with content is at any of the
// places where it is looked for, or the runtime had a modules file and lost it.
const char* flawOfRuntimeInProcess(const char* jreFolder);

// The same for a launch that starts the runtime's bin/java where Java does not run in this process.
// That java may have its JVM library at other places, or need none.
const char* flawOfRuntime(const char* jreFolder);

// The same without a look at the updater's marker "skipped-COMPONENT-VERSION" in QVApps/updates of
// the master folder, which the two above take for a flaw: an update brought this runtime, and the
// application failed with it. It is not to be installed again, though.
const char* damageOfRuntime(const char* jreFolder);

#endif
