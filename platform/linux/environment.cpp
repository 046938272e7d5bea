#include "platform/environment.h"

#include <unistd.h>

char** getEnvP() {
  return environ;
}
