#include "launch/launch_properties.h"

#include <cstdio>
#include <cstring>

#include "support/files/folder_walk.h"
#include "support/files/paths.h"
#include "support/log/clock.h"

static const char kStaticPrefix[] = "qvstat_";
static const char kDynamicPrefix[] = "qvdyna_";
static const char kEmptyValue[] = "\x04";

static_assert(sizeof kStaticPrefix == sizeof kDynamicPrefix, "one size stands for both");

// Offset of the second of the two closing zero bytes.
static size_t closingOffset(const char* buffer) {
  size_t offset = strlen(buffer) + 1;
  while (buffer[offset] != '\0') {
    offset += strlen(buffer + offset) + 1;
  }
  return offset;
}

// Where the next text goes.
static size_t appendOffset(const char* buffer) {
  const size_t closing = closingOffset(buffer);
  return closing == 1 ? 0 : closing;
}

static void writeAndClose(char* at, const char* text) {
  const size_t length = strlen(text);
  memcpy(at, text, length);
  at[length] = '\0';
  at[length + 1] = '\0';
}

int propsLen(const char* buffer) {
  return static_cast<int>(closingOffset(buffer)) - 1;
}

void appendProp(char* buffer, const char* text) {
  writeAndClose(buffer + appendOffset(buffer), text[0] == '\0' ? kEmptyValue : text);
}

void extendProp(char* buffer, const char* text) {
  writeAndClose(buffer + closingOffset(buffer) - 1, text);
}

static char* put(char* at, const char* text) {
  const size_t length = strlen(text);
  memcpy(at, text, length);
  return at + length;
}

// The end is searched for only once: there may be hundreds of properties.
static void addProperty(char* buffer, const char* prefix, const char* key, const char* value) {
  char* at = put(buffer + appendOffset(buffer), prefix);
  at = put(at, key);
  *at++ = '\0';
  writeAndClose(at, value[0] == '\0' ? kEmptyValue : value);
}

void addStaticProperty(char* buffer, const char* key, const char* value) {
  addProperty(buffer, kStaticPrefix, key, value);
}

void addDynamicProperty(char* buffer, const char* key, const char* value) {
  addProperty(buffer, kDynamicPrefix, key, value);
}

bool propertyFits(const char* buffer, size_t capacity, const char* key, const char* value) {
  const size_t used = appendOffset(buffer) + 1;
  const size_t valueLength = value[0] == '\0' ? strlen(kEmptyValue) : strlen(value);
  // The prefix's own terminator is counted in its size; the value adds another one.
  const size_t wanted = sizeof kStaticPrefix + strlen(key) + valueLength + 1;
  return used <= capacity && wanted <= capacity - used;
}

char* makeLaunchPropertiesFile(char* destination, const char* folder) {
  char name[80];
  snprintf(name, sizeof name, "QVLaunchProperties-%lu-%ld", getCurrentTimeMillis(),
           countEntries(folder));
  return setPath(destination, folder, name);
}
