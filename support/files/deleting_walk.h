#ifndef QUORVANE_SUPPORT_FILES_DELETING_WALK_H
#define QUORVANE_SUPPORT_FILES_DELETING_WALK_H

#include "support/owned.h"

// The only walk that deletes. Every folder is opened relative to its parent and never through a
// link, and every name is deleted relative to its open folder, so that swapping folders and links
// meanwhile has no effect. Whatever the depth of the tree, it keeps few descriptors open and does
// not recurse.

// What happens to names that begin with '.' and are shorter than 3 characters.
enum class ShortDotNames { Keep, DeleteSilently };

// Deletes everything inside `folder`, which the log calls `path`, with a line for each deletion and
// each failure; continues after a failure. Returns 1 if the folder cannot be listed, else 0.
int deleteInside(const Descriptor& folder, const char* path, ShortDotNames shortDotNames);

#endif
