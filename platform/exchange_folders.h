#ifndef QUORVANE_PLATFORM_EXCHANGE_FOLDERS_H
#define QUORVANE_PLATFORM_EXCHANGE_FOLDERS_H

// Exchanges the two existing folders in one step that no other process sees half done. Returns
// false where the system or the file system cannot do that; nothing has changed then. Logs nothing.
// Any thread.
[[nodiscard]] bool exchangeFolders(const char* a, const char* b);

#endif
