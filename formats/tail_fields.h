#ifndef QUORVANE_FORMATS_TAIL_FIELDS_H
#define QUORVANE_FORMATS_TAIL_FIELDS_H

#include <cstdio>

// The fields of the Tail record in their order, with the names under which they are logged. The
// Launcher reads ten only and calls the tenth "Update URL".

enum TailFieldNumber {
  TAIL_APP_NAME,
  TAIL_APP_VERSION,
  TAIL_JRE_VERSION,
  TAIL_GU_VERSION,
  TAIL_MIN_SPLASH_MS,
  TAIL_PUBLIC_KEY,
  TAIL_CAN_OVERRIDE_SPLASH,
  TAIL_INSTALL_TYPE,
  TAIL_SILENT_PARAMETER,
  TAIL_REQUIRED_JAVA_VERSION,
  TAIL_UPDATE_URL,
  TAIL_FIELD_COUNT
};

// Read limits in bytes: of all fields but two, of the public key, and of the update URL.
constexpr int TAIL_FIELD_LIMIT = 1024;
constexpr int TAIL_PUBLIC_KEY_LIMIT = 8192;
constexpr int TAIL_UPDATE_URL_LIMIT = 5000;

struct TailField {
  const char* name;
  int limit;
};

constexpr TailField TAIL_FIELDS[TAIL_FIELD_COUNT] = {
    {"App Name", TAIL_FIELD_LIMIT},
    {"App Version", TAIL_FIELD_LIMIT},
    {"JRE Version", TAIL_FIELD_LIMIT},
    {"GU Version", TAIL_FIELD_LIMIT},
    {"Min Splash MS", TAIL_FIELD_LIMIT},
    {"Signature Public Key", TAIL_PUBLIC_KEY_LIMIT},
    {"Can Override Splash", TAIL_FIELD_LIMIT},
    {"Install Type", TAIL_FIELD_LIMIT},
    {"Silent Parameter", TAIL_FIELD_LIMIT},
    {"Required Java Version", TAIL_FIELD_LIMIT},
    {"Update URL", TAIL_UPDATE_URL_LIMIT},
};

// Reads the field `number`, at which `stream` is, as readString() does with its limit.
char* readTailField(FILE* stream, TailFieldNumber number);

#endif
