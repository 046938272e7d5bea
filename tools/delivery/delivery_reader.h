#ifndef QUORVANE_TOOLS_DELIVERY_DELIVERY_READER_H
#define QUORVANE_TOOLS_DELIVERY_DELIVERY_READER_H

#include <functional>
#include <string>

// Archives of others: a JDK as its maker publishes it, and downloads that somebody hands on.

namespace tools {

// Returns why an archive's entry with this path is not unpacked, or an empty text: it is absolute,
// leads upwards, or names nothing.
[[nodiscard]] std::string faultOfEntryPath(const std::string& path);

// Returns why a symbolic link at this path with this target is not unpacked, or an empty text: the
// target is absolute, or leads out of the archive's folder or may do so through another link.
[[nodiscard]] std::string faultOfLink(const std::string& path, const std::string& target);

// Chooses entries by their paths, without "." components and without a '/' at the end.
using EntryChoice = std::function<bool(const std::string& path)>;

// Unpacks the zip, tar or tar.gz `archive` into the existing folder `folder`, which nobody else
// writes to: the entries that `isWanted` chooses, by default all. Files and folders get their
// modes, but are always the owner's to read and write; owners, times and set-user bits are left
// out. Every entry is checked, wanted or not. Throws InputError, naming the archive and the entry,
// if it is no such archive or is damaged, has a path or a link that leads outside of the folder, a
// path twice, something below a link, a hard link or a device, or is larger than any application.
// A changed byte inside a file is noticed in a zip; in a tar.gz only if it cannot be decompressed,
// because libarchive does not compare the checksum of that.
void unpackDelivery(const std::string& archive, const std::string& folder,
                    const EntryChoice& isWanted = {});

}  // namespace tools

#endif
