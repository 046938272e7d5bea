#include "launcher/installation/silent_word.h"

#include <cstring>

bool isSilent(const char* silentParameter, int argumentCount, char* const* arguments) {
  if (silentParameter == nullptr || silentParameter[0] == 0) {
    return false;
  }
  for (int i = 0; i < argumentCount; ++i) {
    if (strcmp(arguments[i], silentParameter) == 0) {
      return true;
    }
  }
  return false;
}
