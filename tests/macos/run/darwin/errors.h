#ifndef QUORVANE_TESTS_MACOS_RUN_DARWIN_ERRORS_H
#define QUORVANE_TESTS_MACOS_RUN_DARWIN_ERRORS_H

#include <cerrno>
#include <cstring>

#include "tests/macos/run/supply/supply.h"

namespace macrun {

// Darwin's error numbers, as <sys/errno.h> has them, and the executable's own errno.

namespace darwin {
constexpr int kEPERM = 1, kEBADF = 9, kENOTDIR = 20, kEISDIR = 21, kEINVAL = 22, kELOOP = 62,
              kENAMETOOLONG = 63;
constexpr size_t kPathMax = 1024;  // PATH_MAX of <sys/syslimits.h>, the zero byte included
}  // namespace darwin

// Returns Darwin's number for one of Linux, and the other way round.
int toDarwinError(int number);
int fromDarwinError(int number);

// The executable's errno. Of the calling thread.
int& darwinErrno();

// Sets the executable's errno to one of Darwin's numbers; returns -1.
int failWith(int darwinNumber);

// Whether Darwin takes a path of this length; sets the executable's errno when not. A null path
// passes: the call itself reports it.
bool isPathShort(const char* path);

// Makes a call of Linux and carries the error it leaves over to the executable's errno.
template <class Call>
auto translating(Call call) {
  errno = 0;
  auto result = call();
  if (errno != 0) {
    darwinErrno() = toDarwinError(errno);
  }
  return result;
}

template <auto Function, class Result, class... Arguments>
Result callTranslated(Arguments... arguments) {
  return translating([&] { return Function(arguments...); });
}

template <auto Function, class Result, class... Arguments>
Result callOnPath(const char* path, Arguments... arguments) {
  return isPathShort(path) ? translating([&] { return Function(path, arguments...); }) : -1;
}

// The second argument only tells the types of the arguments and the result.
template <auto Function, class Result, class... Arguments>
constexpr Supplied translatedAs(const char* name, Result (*)(Arguments...)) {
  return function<&callTranslated<Function, Result, Arguments...>>(name);
}

template <auto Function, class Result, class... Arguments>
constexpr Supplied onPathAs(const char* name, Result (*)(const char*, Arguments...)) {
  return function<&callOnPath<Function, Result, Arguments...>>(name);
}

// A function of Linux's C library whose only difference is the error numbers.
template <auto Function>
constexpr Supplied translated(const char* name) {
  return translatedAs<Function>(name, Function);
}

// The same for one whose first argument is a path, and that returns -1 when it fails.
template <auto Function>
constexpr Supplied onPath(const char* name) {
  return onPathAs<Function>(name, Function);
}

}  // namespace macrun

#endif
