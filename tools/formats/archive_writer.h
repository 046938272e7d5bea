#ifndef QUORVANE_TOOLS_FORMATS_ARCHIVE_WRITER_H
#define QUORVANE_TOOLS_FORMATS_ARCHIVE_WRITER_H

#include <string>
#include <utility>
#include <vector>

#include "tools/keys/signing.h"

// Writes archives. Entries consist of a path and bytes: no times, owners or modes (every extracted
// file gets mode 0755, every folder 0777). They are sorted by the bytes of their paths, so that the
// same content gives the same archive on every machine.

namespace tools {

// The content of an archive.
struct ArchiveContent {
  // The folder whose content is archived; empty for none. A symbolic link is stored as a copy of
  // its target, because archives have no links.
  std::string folder;

  // More entries by path, each with the file that contains its bytes: nested archives, or special
  // blocks under their full path.
  std::vector<std::pair<std::string, std::string>> files;

  // Patterns of the paths that are packed with pack200: one with a '/' is compared with the whole
  // path, another with the name alone; '*' does not match '/'.
  std::vector<std::string> pack200;

  // The program that packs a jar, called with input and output.
  std::string pack200Tool;
};

// Writes the content as the archive `path`, signed if there is a key. A path that ends in ".l2" is
// compressed with LZMA. The file appears complete or not at all. Throws InputError if something
// cannot be read or written, two entries have the same path or paths that differ only in case, the
// product would not extract a path, a pattern matches nothing, or `path` is inside the folder.
void writeArchive(const ArchiveContent& content, const std::string& path, const SigningKey* key);

}  // namespace tools

#endif
