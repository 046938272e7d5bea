#ifndef QUORVANE_SUPPORT_TEXT_STRINGS_H
#define QUORVANE_SUPPORT_TEXT_STRINGS_H

#include <cstddef>

// Helpers for 8-bit C texts. Functions whose names begin with "alloc", escapeSpaces() (when it
// escapes) and quoteSpaciousString() return a new block that the caller frees with free(); the
// process aborts if there is no memory. Any thread. Nothing is logged.

// Returns a new copy of `s`.
char* allocCopy(const char* s);

// Returns a new block of `length` + 1 bytes: up to `length` bytes from s[start], then zeros. Bytes
// outside the text are zero; a negative length gives the empty text.
char* allocSubstring(const char* s, int start, int length);

// Returns a new text: `a` followed by `b`.
char* allocTempString(const char* a, const char* b);

// Returns a new zero-filled block of `size` bytes; the process aborts if there is no memory.
void* allocZeroed(size_t size);

// Returns the index of the last `c` in `s`, or -1.
int lastIndexOf(const char* s, char c);

// Returns the index of the n-th `c` in `s`, counting from 1, or -1 if there are fewer or n < 1.
int indexOf(const char* s, char c, int n);

// Formats `value` in decimal into the 8 bytes at `dst`, cut to 7 characters. Returns the length of
// the whole number.
int integerToA(int value, char* dst);

// Returns `s` itself if `escape` is false, else a new text with a backslash before every blank.
char* escapeSpaces(char* s, bool escape);

// Returns a new text: `s` between double quotes, always.
char* quoteSpaciousString(const char* s);

// Returns `s` itself if it starts with a double quote, else quoteSpaciousString(s).
char* quoteStringIfNecessary(char* s);

// Returns false: there is no 32-bit build.
bool is32Bit();

// Does nothing on this platform.
void editToWindowsSubsystem(const char* path, bool flag);

#endif
