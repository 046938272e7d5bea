#include <cstring>
#include <string>

#include "launcher/jvm/jvm_launch.h"
#include "support/log/logging.h"
#include "support/text/strings.h"

char* getClassPathFor(int count, char** entries) {
  std::string option = count < 1 ? "" : "-Djava.class.path=";
  // A separator without an entry before it would put the working folder on the class path.
  std::string lead;
  for (int i = 0; i < count; ++i) {
    if (entries[i] == nullptr) {
      continue;
    }
    if (option.size() + lead.size() + strlen(entries[i]) >= CLASS_PATH_OPTION_SIZE) {
      logMessage("[JNILaunch] ERROR - Class path does not fit its %d bytes, leaving out %.200s\n",
                 CLASS_PATH_SIZE, entries[i]);
      continue;
    }
    option += lead + entries[i];
    lead = ":";
  }
  char* block = static_cast<char*>(allocZeroed(CLASS_PATH_OPTION_SIZE));
  memcpy(block, option.c_str(), option.size());
  return block;
}
