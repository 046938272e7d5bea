#ifndef QUORVANE_SUPPORT_FILES_MISSING_ENTRIES_H
#define QUORVANE_SUPPORT_FILES_MISSING_ENTRIES_H

#include <string>
#include <vector>

// Adds to the folder `to` the entries that only the folder `from` has, recursively: files as hard
// links where the file system supports them, else as copies, links as links, folders with their
// modes. A name that exists in both is left unchanged in `to`. `leftOut` names entries, by their
// paths in `from`, that are not added. Nothing in `from` changes, and no link is followed.
//
// Returns false, after a logged line, at the first entry that cannot be added, and if a non-empty
// folder conflicts with a name in `to` that is not a folder; entries added so far stay. If `from`
// is missing or not a folder, there is nothing to add. One thread at a time.
[[nodiscard]] bool addMissingEntries(const char* from, const char* to,
                                     const std::vector<std::string>& leftOut = {});

#endif
