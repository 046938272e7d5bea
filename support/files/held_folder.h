#ifndef QUORVANE_SUPPORT_FILES_HELD_FOLDER_H
#define QUORVANE_SUPPORT_FILES_HELD_FOLDER_H

#include <sys/types.h>

#include "support/owned.h"

// A folder that a tree walk is in. It may be closed while the walk is further down, so that the
// walk holds few descriptors open whatever the depth of the tree. Any thread.
struct HeldFolder {
  Descriptor folder;
  dev_t device = 0;
  ino_t file = 0;
};

// Takes the open folder `folder`. Returns false, with nothing changed, if it is not open.
[[nodiscard]] bool hold(Descriptor folder, HeldFolder* held);

// Closes `above` if ".." of the open folder `below` leads back to it; otherwise it stays open.
void letGo(HeldFolder* above, const Descriptor& below);

// Reopens `above` if it was closed. Returns whether it is open, which is false if `below` has been
// moved meanwhile.
[[nodiscard]] bool comeBack(HeldFolder* above, const Descriptor& below);

#endif
