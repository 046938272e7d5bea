#include "tests/macos/run/children/command.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "tests/macos/run/children/child.h"

namespace macrun {

// Where this library and the runner are.
struct Places {
  char library[PATH_MAX];
  char runner[PATH_MAX];
};

static Places places;

constexpr char kPreload[] = "LD_PRELOAD=";
constexpr size_t kPreloadLength = sizeof kPreload - 1;

__attribute__((constructor)) static void findPlaces() {
  Dl_info info;
  if (dladdr(&places, &info) == 0 || realpath(info.dli_fname, places.library) == nullptr) {
    return;
  }
  const char* slash = strrchr(places.library, '/');
  snprintf(places.runner, sizeof places.runner, "%.*s/macrun",
           static_cast<int>(slash - places.library), places.library);
}

// Whether the file is a Mach-O executable, thin or fat. A fat file's second number is its count of
// parts; a Java class, which starts with the same bytes, has its version there, 45 or more.
static bool isMachO(const char* path) {
  constexpr uint32_t kThin = 0xFEEDFACF, kFat = 0xBEBAFECA, kMostParts = 32;
  const int before = errno;
  const int file = open(path, O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  uint32_t words[2] = {};
  const bool isRead = file >= 0 && read(file, words, sizeof words) == sizeof words;
  if (file >= 0) {
    close(file);
  }
  errno = before;
  return isRead &&
         (words[0] == kThin || (words[0] == kFat && __builtin_bswap32(words[1]) < kMostParts));
}

static size_t countOf(char* const* words) {
  size_t count = 0;
  while (words != nullptr && words[count] != nullptr) {
    ++count;
  }
  return count;
}

static const char* findVariable(char* const* environment, const char* lead, size_t length) {
  for (; environment != nullptr && *environment != nullptr; ++environment) {
    if (strncmp(*environment, lead, length) == 0) {
      return *environment;
    }
  }
  return nullptr;
}

size_t roomFor(const char* path, char* const* environment) {
  constexpr size_t kMoreWords = 3;
  const char* preload = findVariable(environment, kPreload, kPreloadLength);
  return (countOf(environment) + kMoreWords) * sizeof(char*) + sizeof kExecutableVariable +
         strlen(path) + 1 + kPreloadLength + strlen(places.library) + 2 +
         (preload != nullptr ? strlen(preload) : 0);
}

static bool isOurs(const char* variable) {
  constexpr size_t kLength = sizeof kExecutableVariable - 1;
  return strncmp(variable, kExecutableVariable, kLength) == 0 && variable[kLength] == '=';
}

// Writes the value of LD_PRELOAD: what it was, and this library.
static char* writePreload(char* text, const char* before) {
  if (before == nullptr || before[kPreloadLength] == 0) {
    return text + sprintf(text, "%s%s", kPreload, places.library) + 1;
  }
  if (strstr(before, places.library) != nullptr) {
    return text + sprintf(text, "%s", before) + 1;
  }
  return text + sprintf(text, "%s:%s", before, places.library) + 1;
}

Child prepareChild(const char* path, char* const* environment, void* room) {
  auto** words = static_cast<char**>(room);
  char* text = reinterpret_cast<char*>(words + countOf(environment) + 3);
  size_t count = 0;
  for (char* const* word = environment; word != nullptr && *word != nullptr; ++word) {
    if (strncmp(*word, kPreload, kPreloadLength) != 0 && !isOurs(*word)) {
      words[count++] = *word;
    }
  }
  words[count++] = text;
  text = writePreload(text, findVariable(environment, kPreload, kPreloadLength));
  const bool throughRunner = isMachO(path);
  if (throughRunner) {
    words[count++] = text;
    sprintf(text, "%s=%s", kExecutableVariable, path);
  }
  words[count] = nullptr;
  return {throughRunner ? places.runner : path, words};
}

bool mayExecute(const Child& child, const char* path) {
  return child.path == path || access(path, X_OK) == 0;
}

}  // namespace macrun
