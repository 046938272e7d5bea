// Calls on streams, that tests/fakes/faults/plan.cpp may let fail. A stream whose call fails has
// its error mark set, as the C library's own would.

#include <stdio_ext.h>
#include <unistd.h>

#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <string>

#include "tests/fakes/faults/plan.h"

static bool isOutput(FILE* stream) {
  return stream == nullptr || stream == stdout || stream == stderr;
}

static std::string pathOf(FILE* stream) {
  const Unwatched self;
  const std::string link = "/proc/self/fd/" + std::to_string(fileno(stream));
  char path[4096];
  const ssize_t length = readlink(link.c_str(), path, sizeof path);
  return std::string(path, length < 0 ? 0 : static_cast<size_t>(length));
}

static bool isLog(FILE* stream) {
  const std::string path = pathOf(stream);
  return path.find("/logs/Wrapper-") != std::string::npos ||
         path.find("/logs/Install-") != std::string::npos;
}

static bool isOwnExecutable(FILE* stream) {
  const std::string path = pathOf(stream);
  const std::string end = "/MacOS/Setup";
  return path.size() > end.size() && path.compare(path.size() - end.size(), end.size(), end) == 0;
}

static void setErrorMark(FILE* stream) {
  constexpr int kErrorMark = 0x20;
  stream->_flags |= kErrorMark;
}

static bool cannotRead(FILE* stream) {
  const bool failing =
      (isCounted("scan") || isCounted("read")) && fails(isOwnExecutable(stream) ? "scan" : "read");
  if (failing) {
    setErrorMark(stream);
  }
  return failing;
}

static bool cannotWrite(FILE* stream) {
  const bool failing = !isOutput(stream) && (isCounted("log") || isCounted("write")) &&
                       fails(isLog(stream) ? "log" : "write");
  if (failing) {
    setErrorMark(stream);
  }
  return failing;
}

extern "C" {

FILE* fopen(const char* path, const char* mode) {
  static const auto next = real<FILE* (*)(const char*, const char*)>("fopen");
  return fails("open") ? nullptr : next(path, mode);
}

FILE* fopen64(const char* path, const char* mode) {
  static const auto next = real<FILE* (*)(const char*, const char*)>("fopen64");
  return fails("open") ? nullptr : next(path, mode);
}

FILE* fdopen(int handle, const char* mode) {
  static const auto next = real<FILE* (*)(int, const char*)>("fdopen");
  return fails("open") ? nullptr : next(handle, mode);
}

size_t fread(void* bytes, size_t size, size_t count, FILE* stream) {
  static const auto next = real<size_t (*)(void*, size_t, size_t, FILE*)>("fread");
  return cannotRead(stream) ? 0 : next(bytes, size, count, stream);
}

size_t __fread_chk(void* bytes, size_t room, size_t size, size_t count, FILE* stream) {
  static const auto next = real<size_t (*)(void*, size_t, size_t, size_t, FILE*)>("__fread_chk");
  return cannotRead(stream) ? 0 : next(bytes, room, size, count, stream);
}

char* fgets(char* text, int size, FILE* stream) {
  static const auto next = real<char* (*)(char*, int, FILE*)>("fgets");
  return cannotRead(stream) ? nullptr : next(text, size, stream);
}

int getc(FILE* stream) {
  static const auto next = real<int (*)(FILE*)>("getc");
  return cannotRead(stream) ? EOF : next(stream);
}

// What getc_unlocked() calls where its buffer is empty.
int __uflow(FILE* stream) {
  static const auto next = real<int (*)(FILE*)>("__uflow");
  return cannotRead(stream) ? EOF : next(stream);
}

size_t fwrite(const void* bytes, size_t size, size_t count, FILE* stream) {
  static const auto next = real<size_t (*)(const void*, size_t, size_t, FILE*)>("fwrite");
  return cannotWrite(stream) ? 0 : next(bytes, size, count, stream);
}

int vfprintf(FILE* stream, const char* format, va_list arguments) {
  static const auto next = real<int (*)(FILE*, const char*, va_list)>("vfprintf");
  return cannotWrite(stream) ? -1 : next(stream, format, arguments);
}

int __vfprintf_chk(FILE* stream, int flag, const char* format, va_list arguments) {
  static const auto next = real<int (*)(FILE*, int, const char*, va_list)>("__vfprintf_chk");
  return cannotWrite(stream) ? -1 : next(stream, flag, format, arguments);
}

int fprintf(FILE* stream, const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const int result = vfprintf(stream, format, arguments);
  va_end(arguments);
  return result;
}

int __fprintf_chk(FILE* stream, int flag, const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const int result = __vfprintf_chk(stream, flag, format, arguments);
  va_end(arguments);
  return result;
}

int fflush(FILE* stream) {
  static const auto next = real<int (*)(FILE*)>("fflush");
  return cannotWrite(stream) ? EOF : next(stream);
}

// What could not be written is lost, and the stream is closed all the same.
int fclose(FILE* stream) {
  static const auto next = real<int (*)(FILE*)>("fclose");
  const bool failing = __fwriting(stream) != 0 ? cannotWrite(stream) : fails("close");
  if (!failing) {
    return next(stream);
  }
  const int error = errno;
  __fpurge(stream);
  next(stream);
  errno = error;
  return EOF;
}

}  // extern "C"
