#ifndef QUORVANE_LAUNCH_LAUNCH_PROPERTIES_H
#define QUORVANE_LAUNCH_LAUNCH_PROPERTIES_H

#include <cstddef>

// The key/value texts that are passed to the Java side, and the file that carries them.
//
// A properties buffer is a sequence of texts, each ended by a zero byte, closed by one more zero
// byte:
//
//   buffer = *( key value ) NUL          an empty buffer is two zero bytes
//   key    = ( "qvstat_" / "qvdyna_" ) name NUL
//   value  = ( 1*byte / %x04 ) NUL       the byte 04 stands for the empty value
//
// The buffer belongs to its allocator and never grows: callers that add to it check the room with
// propertyFits() first. One thread per buffer. Nothing here is logged.

// Size in bytes of the buffer that an installer fills.
constexpr int LAUNCH_PROPERTIES_SIZE = 200000;

// Returns the number of content bytes: the offset of the first of the two closing zero bytes; 0 for
// an empty buffer. A copy of the buffer needs that many bytes plus 2.
int propsLen(const char* buffer);

// Adds `text`, or the byte 04 if it is empty, as a new text at the end.
void appendProp(char* buffer, const char* text);

// Appends `text` to the last text of the buffer, which must have at least one.
void extendProp(char* buffer, const char* text);

// Adds the pair "qvstat_" + `key` and `value`: a property fixed when the application was packaged
// or set by the launch itself.
void addStaticProperty(char* buffer, const char* key, const char* value);

// Adds the pair "qvdyna_" + `key` and `value`: a property given at run time.
void addDynamicProperty(char* buffer, const char* key, const char* value);

// Returns whether a buffer of `capacity` bytes has room for one more property of either kind.
[[nodiscard]] bool propertyFits(const char* buffer, size_t capacity, const char* key,
                                const char* value);

// Writes into the path buffer `destination` (support/files/paths.h) the name of a new properties
// file in `folder`: "QVLaunchProperties-", the time in milliseconds since the epoch, '-' and the
// number of entries in the folder (including "." and ".."; 0 if it cannot be opened). The file is
// not created. Returns `destination`.
char* makeLaunchPropertiesFile(char* destination, const char* folder);

#endif
