#ifndef QUORVANE_SUPPORT_ENCODING_FIELD_READER_H
#define QUORVANE_SUPPORT_ENCODING_FIELD_READER_H

#include <cstdio>

// Readers of the field encoding, used by the Tail record and every settings file: a field is a
// sequence of bytes ended by one zero byte, without length prefix, quoting or escaping. Numbers and
// booleans are fields of decimal text. One thread per stream.

// Default limit of a field, and the limit of a number field, in bytes.
constexpr int DEFAULT_FIELD_LIMIT = 1024;
constexpr int NUMBER_FIELD_LIMIT = 40;

// Reads `stream` byte by byte up to and including the `markerLength` bytes at `marker`. Returns the
// number of bytes consumed (INT_MAX if there were more), or -1, with a logged line that names
// `markerName`, if the stream ends first. A length of 0 returns 0 without reading. A byte that ends
// a partial match is not considered as the first byte of another match.
[[nodiscard]] int scanToMarker(FILE* stream, const char* marker, int markerLength,
                               const char* markerName);

// The same without the logged line.
[[nodiscard]] int findMarker(FILE* stream, const char* marker, int markerLength);

// Reads one field. Returns a new zero-filled block of `limit` bytes (at least 2), owned by the
// caller. A field truncated by the end of the stream is returned as read. If a field exceeds limit
// - 2 bytes, the first limit - 1 bytes are returned, a warning goes to standard output, and the
// rest stays in the stream for the next read. `name` documents the call.
char* readString(FILE* stream, const char* name, int limit);
char* readString(FILE* stream, const char* name);

// The same without the warning.
char* readStringSilently(FILE* stream, int limit);

// Reads one field of decimal text as atol() converts it.
long readInt(FILE* stream, const char* name);

// Reads one field of decimal text; true if and only if it converts to 1.
bool readBoolean(FILE* stream, const char* name);

#endif
