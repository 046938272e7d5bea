#include "extractor/run/silent_start.h"

#include <cstdlib>
#include <cstring>

#include "extractor/run/params_file.h"
#include "formats/params_format.h"
#include "formats/tail_fields.h"
#include "formats/tail_marker.h"
#include "launcher/installation/silent_word.h"
#include "support/encoding/field_reader.h"
#include "support/files/paths.h"
#include "support/owned.h"

static Block<char> readField(const Stream& stream, int limit = DEFAULT_FIELD_LIMIT) {
  return Block<char>(readStringSilently(stream.get(), limit));
}

static bool isAtEnd(const Stream& stream) {
  return feof(stream.get()) != 0 || ferror(stream.get()) != 0;
}

static Stream openParamsSilently(const char* executableDir) {
  char path[PATH_BUFFER_SIZE];
  Stream params(fopen(setFirstParamsPath(path, executableDir), "rb"));
  if (params == nullptr) {
    params.reset(fopen(setSecondParamsPath(path, executableDir), "rb"));
  }
  return params;
}

// Whether the property `property` in the params file is "true".
static bool isTrueInParams(const char* executableDir, const char* property) {
  const Stream params = openParamsSilently(executableDir);
  const char* paramsStart = reinterpret_cast<const char*>(paramsMarker);
  if (params == nullptr || findMarker(params.get(), paramsStart, PARAMS_MARKER_SIZE) < 0) {
    return false;
  }
  const long count = atol(readField(params, NUMBER_FIELD_LIMIT).get());
  for (long i = 0; i < count && !isAtEnd(params); ++i) {
    const Block<char> name = readField(params);
    const Block<char> value = readField(params, PARAM_VALUE_LIMIT);
    if (strcmp(name.get(), property) == 0 && strcmp(value.get(), "true") == 0) {
      return true;
    }
  }
  return false;
}

// Returns a stream positioned at the Tail's first field, or null.
static Stream openTailSilently(const char* executablePath, const char* executableDir) {
  Stream executable(fopen(executablePath, "rb"));
  const Block<char> tailMarker(allocAndInitMarker());
  if (executable == nullptr ||
      findMarker(executable.get(), tailMarker.get(), TAIL_MARKER_SIZE) >= 0) {
    return executable;
  }
  char path[PATH_BUFFER_SIZE];
  return Stream(fopen(setPath(path, executableDir, "..", "Resources", "Tail"), "rb"));
}

// The Tail's silent parameter; empty if there is none.
static Block<char> readSilentParameter(const Stream& tail) {
  for (int i = 0; i < TAIL_SILENT_PARAMETER; ++i) {
    readField(tail, TAIL_FIELDS[i].limit);
  }
  return readField(tail, TAIL_FIELDS[TAIL_SILENT_PARAMETER].limit);
}

// The folder of the executable at `path`, which may be relative.
static Block<char> folderOf(char* path) {
  char* absolutePath = getAbsoluteExePath(path);
  const Block<char> ownPath(absolutePath == path ? nullptr : absolutePath);
  return Block<char>(getAbsoluteExeDir(absolutePath));
}

bool willBeSilent(char* executablePath, int argumentCount, char* const* arguments) {
  const Block<char> executableDir = folderOf(executablePath);
  if (isTrueInParams(executableDir.get(), "show_no_ui")) {
    return true;
  }
  const Stream tail = openTailSilently(executablePath, executableDir.get());
  return tail != nullptr && isSilent(readSilentParameter(tail).get(), argumentCount, arguments);
}

bool isForConsole(char* executablePath) {
  return isTrueInParams(folderOf(executablePath).get(), "console");
}
