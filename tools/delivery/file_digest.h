#ifndef QUORVANE_TOOLS_DELIVERY_FILE_DIGEST_H
#define QUORVANE_TOOLS_DELIVERY_FILE_DIGEST_H

#include <string>

// SHA-256 digests, as 64 lower-case hexadecimal digits.

namespace tools {

std::string digestOfText(const std::string& text);

// Throws InputError if the file cannot be read.
std::string digestOfFile(const std::string& path);

// Of all that is in the folder: paths, kinds, modes, the bytes of files, the targets of links.
// Times and owners do not count. Throws InputError if something cannot be read, or is neither a
// file, a folder nor a link.
std::string digestOfFolder(const std::string& folder);

// Of what an archive of the folder holds: paths and the bytes of files, those of a link's target
// for a link. Modes do not count. Throws InputError as listFolder() does, or if a file cannot be
// read.
std::string digestOfContent(const std::string& folder);

}  // namespace tools

#endif
