#ifndef QUORVANE_TOOLS_DELIVERY_DELIVERY_WRITER_H
#define QUORVANE_TOOLS_DELIVERY_DELIVERY_WRITER_H

#include <string>

// Downloads: one folder, such as a bundle, as one file that every system's own tools open.

namespace tools {

enum class DeliveryFormat { zip, tarGz };

// Returns the suffix of such a file's name, with its dot.
const char* deliverySuffix(DeliveryFormat format);

// Writes the folder `folder` under its own name, with all that is in it, as the archive `path`.
// Modes and symbolic links are kept; owners are not, and every entry has the same time: that of
// SOURCE_DATE_EPOCH, or the start of 1980. Entries are sorted by the bytes of their paths, so that
// the same folder gives the same bytes on every machine with the same zlib. The file appears
// complete or not at all. Throws InputError if something cannot be read or written, or is neither
// a file, a folder nor a link.
void writeDelivery(const std::string& folder, const std::string& path, DeliveryFormat format);

}  // namespace tools

#endif
