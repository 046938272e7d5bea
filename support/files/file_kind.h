#ifndef QUORVANE_SUPPORT_FILES_FILE_KIND_H
#define QUORVANE_SUPPORT_FILES_FILE_KIND_H

// What stands at a path, asked without a log line. A link is looked at itself, never followed,
// except where a function says so. Any thread.

// Returns whether anything stands at `path`; a link counts whatever it leads to.
[[nodiscard]] bool exists(const char* path);

// Returns whether nothing stands at `path`, for sure. Where the system cannot tell, as after a read
// error, both this and exists() are false.
[[nodiscard]] bool isDefinitelyMissing(const char* path);

// Returns whether nothing stands at `path` or where a link there leads to, for sure.
[[nodiscard]] bool isMissingOrBrokenLink(const char* path);

// Returns whether `path` is a link.
[[nodiscard]] bool isLink(const char* path);

// Returns whether `path` is a folder.
[[nodiscard]] bool isFolder(const char* path);

// Returns whether `path` is a folder or a link to one.
[[nodiscard]] bool leadsToFolder(const char* path);

// Returns whether `path` is a plain file.
[[nodiscard]] bool isPlainFile(const char* path);

// Returns whether no plain file with content, nor a link to one, is at `path`, for sure.
[[nodiscard]] bool lacksContent(const char* path);

// Returns whether `path` is a plain file, or a link to one, that may be executed.
[[nodiscard]] bool isExecutable(const char* path);

// Returns whether `path` is known to be nothing that may be executed. Where the system cannot tell,
// as after a read error, it is not known: what asks this is about to delete.
[[nodiscard]] bool isKnownNotExecutable(const char* path);

#endif
