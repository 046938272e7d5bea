#ifndef QUORVANE_ARCHIVE_ENTRY_PATH_H
#define QUORVANE_ARCHIVE_ENTRY_PATH_H

// Returns what is wrong with the text of an entry's path, before the file system is consulted, or
// null: the path must be relative, must not have a ".." component, and must have been read
// completely from its field. The result is a constant. Logs nothing. Any thread.
[[nodiscard]] const char* entryPathError(const char* path);

#endif
