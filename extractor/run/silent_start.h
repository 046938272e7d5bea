#ifndef QUORVANE_EXTRACTOR_RUN_SILENT_START_H
#define QUORVANE_EXTRACTOR_RUN_SILENT_START_H

// Returns whether the run will be silent, by the same two settings as decideSilence()
// (extractor/run/start_up.h): the params file's and the Tail's. Reads both ahead of the flow,
// because its first step prepares the splash window. If a file or marker is missing the run counts
// as not silent; the flow reports it. `executablePath` is as invoked. Logs nothing. Main thread.
[[nodiscard]] bool willBeSilent(char* executablePath, int argumentCount, char* const* arguments);

// Returns whether the params file says that the application writes to a console: the property
// "console" is "true". Standard output is then the application's alone. Logs nothing. Main thread.
[[nodiscard]] bool isForConsole(char* executablePath);

#endif
