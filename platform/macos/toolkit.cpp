#include "platform/toolkit.h"

void prepareToolkit(char**) {}
