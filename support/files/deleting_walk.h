#ifndef QUORVANE_SUPPORT_FILES_DELETING_WALK_H
#define QUORVANE_SUPPORT_FILES_DELETING_WALK_H

#include "support/owned.h"

// The one walk that deletes. Every folder is opened relative to the one above it and never through
// a link, and every name is deleted relative to its open folder: whoever exchanges folders and
// links meanwhile leads it nowhere. However deep the tree, it holds few descriptors open and does
// not recurse.

// What happens to names that begin with '.' and are shorter than 3 characters.
enum class ShortDotNames { Keep, DeleteSilently };

// Deletes everything inside `folder`, which is known to the log as `path`, with a line for each
// deletion and each failure; goes on after a failure. Returns 1 when it cannot be listed, else 0.
int deleteInside(const Descriptor& folder, const char* path, ShortDotNames shortDotNames);

#endif
