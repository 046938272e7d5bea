#ifndef QUORVANE_SUPPORT_ENCODING_FIELD_READER_H
#define QUORVANE_SUPPORT_ENCODING_FIELD_READER_H

#include <cstdio>

// Readers of the field encoding, in which the Tail record and every settings file of the system are
// written: a field is a run of bytes ended by one zero byte, without length prefix, quoting or
// escaping. Numbers and booleans are fields of decimal text. One thread per stream.

// Limit of a field whose reader names none, and of a number field, in bytes.
constexpr int DEFAULT_FIELD_LIMIT = 1024;
constexpr int NUMBER_FIELD_LIMIT = 40;

// Reads `stream` byte by byte up to and including the `markerLength` bytes at `marker`. Returns the
// number of bytes consumed (INT_MAX when there were more), or -1, with a logged line that names
// `markerName`, when the stream ends first. A length of 0 returns 0 without reading. A byte that
// breaks a partial match is not looked at again as the marker's first byte.
[[nodiscard]] int scanToMarker(FILE* stream, const char* marker, int markerLength,
                               const char* markerName);

// The same without the logged line.
[[nodiscard]] int findMarker(FILE* stream, const char* marker, int markerLength);

// Reads one field. Returns a new zero-filled block of `limit` bytes (at least 2), owned by the
// caller. A field cut short by the end of the stream is returned as read. Of a field longer than
// limit - 2 bytes the first limit - 1 are returned, a warning goes to standard output, and the rest
// stays in the stream for the next read. `name` documents the call.
char* readString(FILE* stream, const char* name, int limit);
char* readString(FILE* stream, const char* name);

// The same without the warning.
char* readStringSilently(FILE* stream, int limit);

// Reads one field of decimal text as atol() converts it.
long readInt(FILE* stream, const char* name);

// Reads one field of decimal text; true exactly when it converts to 1.
bool readBoolean(FILE* stream, const char* name);

#endif
