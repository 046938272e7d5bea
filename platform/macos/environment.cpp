#include "platform/environment.h"

#include <crt_externs.h>

char** getEnvP() {
  return *_NSGetEnviron();
}
