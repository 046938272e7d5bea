#ifndef QUORVANE_LAUNCHER_INSTALLATION_SILENT_WORD_H
#define QUORVANE_LAUNCHER_INSTALLATION_SILENT_WORD_H

// Returns whether `silentParameter` is a word and one of the first `argumentCount` arguments (the
// program's own path is one of them) equals it exactly. Logs nothing. Any thread.
[[nodiscard]] bool isSilent(const char* silentParameter, int argumentCount, char* const* arguments);

#endif
