#ifndef QUORVANE_TESTS_SUPPORT_REAL_FUNCTIONS_H
#define QUORVANE_TESTS_SUPPORT_REAL_FUNCTIONS_H

#include <time.h>

#include <cstdio>

namespace test {

// The system's own functions, for executables that put others in their places. Arguments and
// results are those of the functions that they are named after.
int realClockGettime(clockid_t clock, timespec* result);
int realNanosleep(const timespec* duration, timespec* rest);
size_t realFwrite(const void* bytes, size_t size, size_t count, FILE* file);
int realLinkat(int from, const char* name, int to, const char* other, int flags);
int realUnlinkat(int folder, const char* path, int flags);

}  // namespace test

#endif
