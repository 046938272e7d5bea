#ifndef QUORVANE_LAUNCHER_INSTALLATION_SILENT_WORD_H
#define QUORVANE_LAUNCHER_INSTALLATION_SILENT_WORD_H

// Returns whether `silentParameter` is not empty and one of the first `argumentCount` arguments
// (including the program's own path) equals it exactly. Logs nothing. Any thread.
[[nodiscard]] bool isSilent(const char* silentParameter, int argumentCount, char* const* arguments);

#endif
