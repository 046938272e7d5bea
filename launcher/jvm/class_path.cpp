#include <cstring>

#include "launcher/jvm/jvm_launch.h"
#include "support/log/logging.h"
#include "support/text/strings.h"

static const char kClassPathOption[] = "-Djava.class.path=";

// Appends `lead` and `entry` to the option of *length bytes; returns false, logged, when they do
// not fit.
static bool appendEntry(char* option, size_t* length, const char* lead, const char* entry) {
  const size_t room = CLASS_PATH_OPTION_SIZE - *length;
  const size_t leadLength = strlen(lead);
  const size_t entryLength = strlen(entry);
  if (leadLength >= room || entryLength >= room - leadLength) {
    logMessage("[JNILaunch] ERROR - Class path does not fit its %d bytes, leaving out %.200s\n",
               CLASS_PATH_SIZE, entry);
    return false;
  }
  memcpy(option + *length, lead, leadLength);
  memcpy(option + *length + leadLength, entry, entryLength);
  *length += leadLength + entryLength;
  return true;
}

char* getClassPathFor(int count, char** entries) {
  char* option = static_cast<char*>(allocZeroed(CLASS_PATH_OPTION_SIZE));
  if (count < 1) {
    return option;
  }
  strcpy(option, kClassPathOption);
  size_t length = strlen(option);
  // A separator without an entry before it would put the working folder on the class path.
  const char* lead = "";
  for (int i = 0; i < count; ++i) {
    if (entries[i] != nullptr && appendEntry(option, &length, lead, entries[i])) {
      lead = ":";
    }
  }
  return option;
}
