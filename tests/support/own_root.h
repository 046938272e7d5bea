#ifndef QUORVANE_TESTS_SUPPORT_OWN_ROOT_H
#define QUORVANE_TESTS_SUPPORT_OWN_ROOT_H

#include <string>
#include <vector>

namespace test {

// A folder that a program sees in the place of one at the root of the file system.
struct RootFolder {
  std::string name;    // its name at the root, "Library" for example
  std::string source;  // the folder that it sees there
};

// Whether this process may give a program a root folder, or mounts, of its own.
bool mayMount();

// Gives this process a root of its own, made in the empty folder `root`: all that the real one
// holds, with `folders` in place of, or beside, what is there. To be called in a new process,
// before its program starts; the mounts are that process's own and go away with it.
void enterOwnRoot(const std::string& root, const std::vector<RootFolder>& folders);

// Mounts an empty file system of `size` bytes on `folder`, for this process and its children alone.
// To be called in a new process.
void mountSmallDisk(const std::string& folder, const std::string& size);

}  // namespace test

#endif
