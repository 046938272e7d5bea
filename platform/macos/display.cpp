#include "platform/display.h"

bool isDisplayAvailable() {
  return true;
}
