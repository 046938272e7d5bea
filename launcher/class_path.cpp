#include <cstring>

#include "launcher/jvm_launch.h"
#include "support/logging.h"
#include "support/strings.h"

static const char kClassPathOption[] = "-Djava.class.path=";

// Appends `lead` and `entry` to the option; returns false, logged, when they do not fit.
static bool appendEntry(char* option, const char* lead, const char* entry) {
  const size_t room = CLASS_PATH_OPTION_SIZE - strlen(option);
  const size_t leadLength = strlen(lead);
  if (leadLength >= room || strlen(entry) >= room - leadLength) {
    logMessage("[JNILaunch] ERROR - Class path does not fit its %d bytes, leaving out %.200s\n",
               CLASS_PATH_SIZE, entry);
    return false;
  }
  strcat(strcat(option, lead), entry);
  return true;
}

char* getClassPathFor(int count, char** entries) {
  char* option = static_cast<char*>(allocZeroed(CLASS_PATH_OPTION_SIZE));
  if (count < 1) {
    return option;
  }
  strcpy(option, kClassPathOption);
  // A separator without an entry before it would put the working folder on the class path.
  const char* lead = "";
  for (int i = 0; i < count; ++i) {
    if (entries[i] != nullptr && appendEntry(option, lead, entries[i])) {
      lead = ":";
    }
  }
  return option;
}
