#include "support/files/paths.h"

#include <cstdlib>
#include <cstring>

#include <memory>

#include <unistd.h>

#include "support/log/logging.h"
#include "support/text/strings.h"

static char* becomeUnusable(char* dst, const char* part) {
  logMessage("[Utils] ERROR - Path does not fit its %d bytes: %.200s\n", PATH_BUFFER_SIZE, part);
  return strcpy(dst, UNUSABLE_PATH);
}

static bool fits(size_t length, size_t more) {
  return length < PATH_BUFFER_SIZE && more < PATH_BUFFER_SIZE - length;
}

char* appendToPath(char* dst, const char* text) {
  const size_t length = strlen(dst);
  const size_t more = strlen(text);
  if (!fits(length, more)) {
    return becomeUnusable(dst, text);
  }
  memcpy(dst + length, text, more + 1);
  return dst;
}

char* pathcat(char* dst, const char* part) {
  const size_t length = strlen(dst);
  const bool needsSeparator = length == 0 || dst[length - 1] != '/';
  if (!fits(length, strlen(part) + (needsSeparator ? 1 : 0))) {
    return becomeUnusable(dst, part);
  }
  if (needsSeparator) {
    appendToPath(dst, "/");
  }
  return appendToPath(dst, part);
}

char* setPath(char* dst, const char* a) {
  dst[0] = 0;
  return appendToPath(dst, a);
}

char* setPath(char* dst, const char* a, const char* b) {
  return pathcat(setPath(dst, a), b);
}

char* setPath(char* dst, const char* a, const char* b, const char* c) {
  return pathcat(setPath(dst, a, b), c);
}

char* setPath(char* dst, const char* a, const char* b, const char* c, const char* d) {
  return pathcat(setPath(dst, a, b, c), d);
}

char* setPath(char* dst, const char* a, const char* b, const char* c, const char* d,
              const char* e) {
  return pathcat(setPath(dst, a, b, c, d), e);
}

std::string childPath(const std::string& folder, const std::string& name) {
  // On the heap: walks call this at every level of a tree as deep as a path can be.
  const std::unique_ptr<char[]> path(new char[PATH_BUFFER_SIZE]);
  return setPath(path.get(), folder.c_str(), name.c_str());
}

char* toNativePath(char* path) {
  return path;
}

bool isAbsolutePath(const char* path) {
  return path[0] == '/';
}

static char* allocPathBuffer() {
  return static_cast<char*>(allocZeroed(PATH_BUFFER_SIZE));
}

char* getAbsoluteExePath(char* path) {
  if (isAbsolutePath(path)) {
    return path;
  }
  char* absolute = allocPathBuffer();
  if (getcwd(absolute, 1024) == nullptr) {
    logMessage("[Utils] ERROR - No working folder to make a path absolute: %.200s\n", path);
    return setPath(absolute, UNUSABLE_PATH);
  }
  return pathcat(absolute, path);
}

char* getAbsoluteExeDir(const char* path) {
  char* folder = setPath(allocPathBuffer(), path);
  if (strcmp(folder, UNUSABLE_PATH) == 0) {
    return folder;
  }
  const int slash = lastIndexOf(folder, '/');
  folder[slash > 0 ? slash : 0] = 0;
  return folder;
}

const char* pathToFile(const char* path) {
  const char* slash = strrchr(path, '/');
  return slash == nullptr ? path : slash + 1;
}

char* pathToFile(char* path) {
  return const_cast<char*>(pathToFile(static_cast<const char*>(path)));
}

char* allocTempPath(char* dir, char* name) {
  toNativePath(dir);
  toNativePath(name);
  const size_t length = strlen(dir);
  const bool needsSeparator = length > 0 && dir[length - 1] != '/';
  char* withSeparator = allocTempString(dir, needsSeparator ? "/" : "");
  char* path = allocTempString(withSeparator, name);
  free(withSeparator);
  return path;
}
