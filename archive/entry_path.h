#ifndef QUORVANE_ARCHIVE_ENTRY_PATH_H
#define QUORVANE_ARCHIVE_ENTRY_PATH_H

// Returns what is wrong with an entry's path as text, before the file system is looked at, or null:
// it must be relative, must not have a ".." component, and must have been read whole from its
// field. The result is a constant. Logs nothing. Any thread.
[[nodiscard]] const char* entryPathError(const char* path);

#endif
