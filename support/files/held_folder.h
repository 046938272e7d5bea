#ifndef QUORVANE_SUPPORT_FILES_HELD_FOLDER_H
#define QUORVANE_SUPPORT_FILES_HELD_FOLDER_H

#include <sys/types.h>

#include "support/owned.h"

// A folder that a walk through a tree is in. It may be closed while the walk is further down, which
// so holds few descriptors open however deep the tree. Any thread.
struct HeldFolder {
  Descriptor folder;
  dev_t device = 0;
  ino_t file = 0;
};

// Takes the open folder `folder`. Returns false, with nothing changed, where it is not open.
[[nodiscard]] bool hold(Descriptor folder, HeldFolder* held);

// Closes `above` if the way back to it leads through ".." of the open folder `below`; else it stays
// open.
void letGo(HeldFolder* above, const Descriptor& below);

// Opens `above` again where it was closed. Returns whether it is open: not so when `below` has been
// moved elsewhere meanwhile.
[[nodiscard]] bool comeBack(HeldFolder* above, const Descriptor& below);

#endif
