#ifndef QUORVANE_TOOLS_PROJECT_RESERVED_NAMES_H
#define QUORVANE_TOOLS_PROJECT_RESERVED_NAMES_H

#include "tools/formats/archive_writer.h"

// An installer extracts its own records into the version folders beside what it carries, and later
// records replace earlier ones.

namespace tools {

// Throw InputError, naming the file and what to do, if the content has a top-level file that one of
// the installer's records would replace or be replaced by.
void requireNoReservedNamesInUpdater(const ArchiveContent& content);
void requireNoReservedNamesInApplication(const ArchiveContent& content);

}  // namespace tools

#endif
