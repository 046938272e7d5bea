// Takes the place of the log where the benchmark asks what the rest costs.

#include "support/log/logging.h"

extern "C" void quietLog(const char* format, ...) __asm__("__wrap__Z10logMessagePKcz");

void quietLog(const char*, ...) {}
