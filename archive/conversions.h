#ifndef QUORVANE_ARCHIVE_CONVERSIONS_H
#define QUORVANE_ARCHIVE_CONVERSIONS_H

#include "archive/destination.h"
#include "archive/entry.h"
#include "archive/ready_data.h"
#include "archive/trust.h"
#include "support/owned.h"

// Processing of an entry's file after it has been written. `folder` is the open folder that
// contains it. A tool that cannot be started, fails or is killed leaves no output file, neither its
// own nor an older file of that name.

// Unpacks the pack200 file at the entry's target to its plain path with the tool `unpack200Exe`
// (null counts as a missing tool) and deletes the pack200 file; the target is the plain path from
// then on. Ends the process with status 101, after a logged line, if nothing was unpacked.
void unpackPack200(const char* unpack200Exe, Entry* entry, const Descriptor& folder);

// Decompresses a target that ends in ".l2" with the tool `lzmaExe` to the same path without that
// suffix, deletes the compressed file, and makes the output the target. Other targets are left
// alone. Ends the process with status 1, after a logged line, if nothing was decompressed. Unless
// `ready` is null the tool has already run, and what it made is moved into place; if that fails,
// the tool runs again.
void decompressLzma(const char* lzmaExe, Entry* entry, const Descriptor& folder,
                    const ReadyData* ready);

// Whether decompressLzma() decompresses the entry.
[[nodiscard]] bool isLzmaEntry(const Entry& entry);

// Extracts a target that ends in ".p2" as a separate archive, with its own signature, into
// `destination`, and deletes it. Other targets are left alone. Nested archives inside it stay as
// they are, so there is at most one level of nesting.
void extractNestedArchive(const char* unpack200Exe, const Entry& entry, const Descriptor& folder,
                          Destination* destination, Trust trust);

#endif
