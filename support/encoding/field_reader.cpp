#include "support/encoding/field_reader.h"

#include <climits>
#include <cstdlib>

#include "support/log/logging.h"
#include "support/text/strings.h"

int findMarker(FILE* stream, const char* marker, int markerLength) {
  int matched = 0;
  int consumed = 0;
  while (matched < markerLength) {
    const int byte = getc_unlocked(stream);
    if (byte == EOF) {
      return -1;
    }
    matched = byte == static_cast<unsigned char>(marker[matched]) ? matched + 1 : 0;
    consumed += consumed < INT_MAX ? 1 : 0;
  }
  return consumed;
}

int scanToMarker(FILE* stream, const char* marker, int markerLength, const char* markerName) {
  const int consumed = findMarker(stream, marker, markerLength);
  if (consumed < 0) {
    logMessage("Could not find marker: %s\n", markerName);
  }
  return consumed;
}

// `isCut` says whether the field is longer than its limit.
static char* readField(FILE* stream, int limit, bool* isCut) {
  *isCut = false;
  char* text = static_cast<char*>(allocZeroed(static_cast<size_t>(limit)));
  int byte = getc_unlocked(stream);
  for (int i = 0; byte != 0 && byte != EOF; ++i) {
    text[i] = static_cast<char>(byte);
    if (i == limit - 2) {
      *isCut = true;
      break;
    }
    byte = getc_unlocked(stream);
  }
  return text;
}

char* readString(FILE* stream, const char*, int limit) {
  bool isCut = false;
  char* text = readField(stream, limit, &isCut);
  if (isCut) {
    printf("***WARNING - STRING TOO LONG FOR ALLOC %d>%d! (READSTRING) [%s]\n", limit - 1, limit,
           text);
  }
  return text;
}

char* readStringSilently(FILE* stream, int limit) {
  bool isCut = false;
  return readField(stream, limit, &isCut);
}

char* readString(FILE* stream, const char* name) {
  return readString(stream, name, DEFAULT_FIELD_LIMIT);
}

long readInt(FILE* stream, const char* name) {
  char* text = readString(stream, name, NUMBER_FIELD_LIMIT);
  const long value = atol(text);
  free(text);
  return value;
}

bool readBoolean(FILE* stream, const char* name) {
  return readInt(stream, name) == 1;
}
