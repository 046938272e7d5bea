#ifndef QUORVANE_SUPPORT_LOG_CLOCK_H
#define QUORVANE_SUPPORT_LOG_CLOCK_H

#include <cstdint>

// The wall clock. Any thread. Nothing is logged.

// Returns milliseconds since the epoch.
uint64_t systemTimeMillis();

// Returns milliseconds since the epoch, or 0 when the clock cannot be read.
unsigned long getCurrentTimeMillis();

// Returns the millisecond part (0 to 999) of the current time, or 0 when it cannot be read.
int getJustMillis();

// Sleeps n whole seconds: the name says milliseconds, but the nanosecond part is always 0.
void millisleep(long n);

#endif
