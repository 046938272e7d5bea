#ifndef QUORVANE_SUPPORT_FILES_FILE_KIND_H
#define QUORVANE_SUPPORT_FILES_FILE_KIND_H

// The kind of a path, determined without a log line. A link itself is examined, never its target,
// except where a function says so. Any thread.

// Returns whether `path` exists; a link counts whatever its target.
[[nodiscard]] bool exists(const char* path);

// Returns whether `path` definitely does not exist. If the system cannot tell, as after a read
// error, both this and exists() are false.
[[nodiscard]] bool isDefinitelyMissing(const char* path);

// Returns whether `path`, or its target if it is a link, definitely does not exist.
[[nodiscard]] bool isMissingOrBrokenLink(const char* path);

// Returns whether `path` is a link.
[[nodiscard]] bool isLink(const char* path);

// Returns whether `path` is a folder.
[[nodiscard]] bool isFolder(const char* path);

// Returns whether `path` is a folder or a link to one.
[[nodiscard]] bool leadsToFolder(const char* path);

// Returns whether `path` is a regular file.
[[nodiscard]] bool isRegularFile(const char* path);

// Returns whether `path` is definitely neither a non-empty regular file nor a link to one.
[[nodiscard]] bool lacksContent(const char* path);

// Returns whether `path` is an executable regular file, or a link to one.
[[nodiscard]] bool isExecutable(const char* path);

// Returns whether `path` is definitely not executable. If the system cannot tell, as after a read
// error, the result is false, because callers are about to delete.
[[nodiscard]] bool isKnownNotExecutable(const char* path);

#endif
