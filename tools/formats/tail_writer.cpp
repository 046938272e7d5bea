#include "tools/formats/tail_writer.h"

#include <sys/stat.h>

#include <filesystem>

#include "formats/tail_marker.h"
#include "support/owned.h"
#include "tools/formats/marker_search.h"
#include "tools/system/input_error.h"
#include "tools/system/whole_file.h"

namespace fs = std::filesystem;

namespace tools {

std::string tailPathInBundle(const std::string& bundle) {
  const std::string contents = bundle + "/Contents";
  std::error_code ignored;
  if (!fs::is_directory(contents, ignored)) {
    throw InputError(bundle +
                     " is not an app bundle: it has no folder Contents; name a bundle or a file");
  }
  const std::string resources = contents + "/Resources";
  mkdir(resources.c_str(), 0755);
  return resources + "/Tail";
}

void writeTailFile(const std::string& path, const Tail& tail) {
  const std::string record = encodeTail(tail);
  WholeFile file(path, 0644);
  file.write(record.data(), record.size());
  file.finish();
}

static void copy(const std::string& path, FILE* from, WholeFile* to) {
  char bytes[65536];
  for (size_t count; (count = fread(bytes, 1, sizeof bytes, from)) > 0;) {
    to->write(bytes, count);
  }
  if (ferror(from) != 0) {
    throw InputError(path + " cannot be read to its end");
  }
}

void appendTail(const std::string& path, const Tail& tail) {
  const std::string record = encodeTail(tail);
  const Stream executable = openInput(path);
  const MarkerSearch search = searchMarker(executable.get());
  if (search.found) {
    throw InputError(path + " already has a record, at byte " + std::to_string(search.offset) +
                     "; use a copy of the executable without one");
  }
  fseeko(executable.get(), 0, SEEK_SET);
  WholeFile file(path, permissionsOf(executable.get()));
  copy(path, executable.get(), &file);
  if (search.begun > 0) {
    // The executable ends with the marker's first bytes; a byte in between keeps the marker
    // findable.
    file.write("", 1);
  }
  const Block<char> bytes(allocAndInitMarker());
  file.write(bytes.get(), TAIL_MARKER_SIZE);
  file.write(record.data(), record.size());
  file.finish();
}

}  // namespace tools
