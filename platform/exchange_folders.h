#ifndef QUORVANE_PLATFORM_EXCHANGE_FOLDERS_H
#define QUORVANE_PLATFORM_EXCHANGE_FOLDERS_H

// Exchanges the two existing folders atomically. Returns false, with nothing changed, if the system
// or the file system cannot do that. Logs nothing. Any thread.
[[nodiscard]] bool exchangeFolders(const char* a, const char* b);

#endif
