#include "platform/toolkit.h"

void prepareToolkit(char**) {}

void beforeApplicationCreation() {}

void afterApplicationCreation() {}
