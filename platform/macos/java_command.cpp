#include "platform/java_command.h"

bool takesJavaCommandHostOptions() {
  return true;
}
