#include "archive/entry_path.h"

#include <cstring>

#include "support/encoding/field_reader.h"
#include "support/files/paths.h"

static bool isParent(const char* component) {
  return component[0] == '.' && component[1] == '.' && (component[2] == '/' || component[2] == 0);
}

const char* entryPathError(const char* path) {
  if (isAbsolutePath(path)) {
    return "path is absolute";
  }
  for (const char* component = path; component != nullptr;) {
    if (isParent(component)) {
      return "path leads out of the destination";
    }
    const char* separator = strchr(component, '/');
    component = separator == nullptr ? nullptr : separator + 1;
  }
  // A field of this length may continue in the stream: the rest of the record would be misread.
  if (strlen(path) > DEFAULT_FIELD_LIMIT - 2) {
    return "path is too long";
  }
  return nullptr;
}
