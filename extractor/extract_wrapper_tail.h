#ifndef QUORVANE_EXTRACTOR_EXTRACT_WRAPPER_TAIL_H
#define QUORVANE_EXTRACTOR_EXTRACT_WRAPPER_TAIL_H

// Installs, if needed, what the installer at `executablePath` carries, and launches the newest
// installed updater; never returns. The process ends with status 0 after a launch or a finished
// elevated run, with status 1 (a logged line says why) if it cannot go on, and otherwise as
// documented for the archive reader (archive/archive.h) and the launch (launch/launch_app.h).
//
//   executablePath   the running executable as it was invoked
//   argc, argv       the process's arguments, handed on to the launched application
//   elevated         the run only prepares an installation: it shows nothing and launches nothing
//
// Unnamed parameters are accepted and ignored. The texts stay the caller's. Main thread.
extern "C" [[noreturn]] void extractWrapperTail(char* executablePath, int argc, char** argv, int,
                                                char**, bool elevated);

#endif
