#ifndef QUORVANE_SUPPORT_FILES_MOVE_ITEM_H
#define QUORVANE_SUPPORT_FILES_MOVE_ITEM_H

// Moves the file or folder `from` to `to`, which must not exist, through the Cocoa file manager.
// Returns whether it worked; a failure is written to the system log. The installing thread.
[[nodiscard]] bool moveItem(const char* from, const char* to);

#endif
