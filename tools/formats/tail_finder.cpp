#include "support/owned.h"
#include "tools/formats/marker_search.h"
#include "tools/formats/strict_fields.h"
#include "tools/formats/tail_writer.h"
#include "tools/system/whole_file.h"

namespace tools {

const char* const TAIL_VALUE_NAMES[TAIL_VALUE_COUNT] = {"app-name",
                                                        "app-version",
                                                        "jre-version",
                                                        "gu-version",
                                                        "min-splash-ms",
                                                        "public-key",
                                                        "can-override-splash",
                                                        "install-type",
                                                        "silent-parameter",
                                                        "required-java-version",
                                                        "update-url"};

// The Launcher reads one field less.
static const int kLauncherOnlyCount = TAIL_FIELD_COUNT - 1;

// Returns the number of bytes from the stream's position to its end.
static long long bytesLeft(FILE* stream) {
  const off_t here = ftello(stream);
  fseeko(stream, 0, SEEK_END);
  return ftello(stream) - here;
}

FoundTail findTail(const std::string& path) {
  const Stream stream = openInput(path);
  const MarkerSearch search = searchMarker(stream.get());
  FoundTail found;
  found.isAppended = search.found;
  if (search.found) {
    found.offset = search.offset;
  } else {
    fseeko(stream.get(), 0, SEEK_SET);
  }
  StrictFields fields(stream.get(), path, "it is truncated or not a Tail record");
  for (int i = 0; i < TAIL_VALUE_COUNT; ++i) {
    if (i == kLauncherOnlyCount && fields.isAtEnd()) {
      break;
    }
    found.values[i] = fields.text(TAIL_VALUE_NAMES[i], TAIL_FIELDS[i].limit);
  }
  found.bytesBehind = bytesLeft(stream.get());
  return found;
}

}  // namespace tools
