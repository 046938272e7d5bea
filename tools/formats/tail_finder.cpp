#include "support/owned.h"
#include "tools/formats/marker_search.h"
#include "tools/formats/tail_writer.h"
#include "tools/system/input_error.h"
#include "tools/system/whole_file.h"

// A packager must report a broken record, so this reader is strict where the product's own is
// lenient.

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

static std::string readValue(FILE* stream, int value, const std::string& path) {
  const size_t longest = static_cast<size_t>(TAIL_FIELDS[value].limit) - 2;
  std::string text;
  int byte = getc(stream);
  for (; byte != 0 && byte != EOF && text.size() <= longest; byte = getc(stream)) {
    text.push_back(static_cast<char>(byte));
  }
  if (text.size() > longest) {
    throw InputError(path + ": " + TAIL_VALUE_NAMES[value] + " is longer than the " +
                     std::to_string(longest) +
                     " bytes that are read; the file is not a Tail record");
  }
  if (byte == EOF) {
    throw InputError(path + ": the record ends inside " + TAIL_VALUE_NAMES[value] +
                     "; it is truncated or not a Tail record");
  }
  return text;
}

static bool isAtEnd(FILE* stream) {
  const int byte = getc(stream);
  ungetc(byte, stream);
  return byte == EOF;
}

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
    rewind(stream.get());
  }
  for (int i = 0; i < TAIL_VALUE_COUNT; ++i) {
    if (i == kLauncherOnlyCount && isAtEnd(stream.get())) {
      break;
    }
    found.values[i] = readValue(stream.get(), i, path);
  }
  found.bytesBehind = bytesLeft(stream.get());
  return found;
}

}  // namespace tools
