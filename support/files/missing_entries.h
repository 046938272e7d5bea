#ifndef QUORVANE_SUPPORT_FILES_MISSING_ENTRIES_H
#define QUORVANE_SUPPORT_FILES_MISSING_ENTRIES_H

#include <string>
#include <vector>

// Adds to the folder `to` what the folder `from` holds and it lacks, all the way down: files as
// further names of the same file where the file system has these, else as copies, links as links,
// folders with their modes. A name that both hold stays what it is in `to`. `leftOut` names
// entries, by their paths in `from`, that are not added. Nothing in `from` changes, and no link
// is followed.
//
// Returns false, after a logged line, at the first entry that cannot be added, and where a folder
// that is not empty meets a name that is no folder in `to`; what was added until then stays. A
// `from` that is missing, or no folder, has nothing to add. One thread at a time.
[[nodiscard]] bool addMissingEntries(const char* from, const char* to,
                                     const std::vector<std::string>& leftOut = {});

#endif
