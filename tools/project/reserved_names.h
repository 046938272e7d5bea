#ifndef QUORVANE_TOOLS_PROJECT_RESERVED_NAMES_H
#define QUORVANE_TOOLS_PROJECT_RESERVED_NAMES_H

#include "tools/formats/archive_writer.h"

// An installer extracts records of its own into the version folders beside what it carries, and
// what comes later replaces what came before.

namespace tools {

// Throw InputError, naming the file and what to do, when the content has a file at its top that a
// record of the installer would replace or be replaced by.
void requireNoReservedNamesInUpdater(const ArchiveContent& content);
void requireNoReservedNamesInApplication(const ArchiveContent& content);

}  // namespace tools

#endif
