#include "support/field_reader.h"

#include <climits>
#include <cstdlib>

#include "support/logging.h"
#include "support/strings.h"

int scanToMarker(FILE* stream, const char* marker, int markerLength, const char* markerName) {
  int matched = 0;
  int consumed = 0;
  while (matched < markerLength) {
    const int byte = getc_unlocked(stream);
    if (byte == EOF) {
      logMessage("Could not find marker: %s\n", markerName);
      return -1;
    }
    matched = byte == static_cast<unsigned char>(marker[matched]) ? matched + 1 : 0;
    consumed += consumed < INT_MAX ? 1 : 0;
  }
  return consumed;
}

char* readString(FILE* stream, const char*, int limit) {
  char* text = static_cast<char*>(allocZeroed(static_cast<size_t>(limit)));
  int byte = getc_unlocked(stream);
  for (int i = 0; byte != 0 && byte != EOF; ++i) {
    text[i] = static_cast<char>(byte);
    if (i == limit - 2) {
      printf("***WARNING - STRING TOO LONG FOR ALLOC %d>%d! (READSTRING) [%s]\n", limit - 1, limit,
             text);
      break;
    }
    byte = getc_unlocked(stream);
  }
  return text;
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
