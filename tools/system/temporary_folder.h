#ifndef QUORVANE_TOOLS_SYSTEM_TEMPORARY_FOLDER_H
#define QUORVANE_TOOLS_SYSTEM_TEMPORARY_FOLDER_H

#include <string>

#include "support/owned.h"

namespace tools {

// A new empty folder in the system's temporary folder or another one, removed with all its contents
// at the end. Throws InputError if it cannot be created. Beside it is a lock, which this process
// and the programs that it starts hold: without them the folder is abandoned.
class TemporaryFolder {
 public:
  explicit TemporaryFolder(const std::string& parent = "");
  ~TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  const std::string& path() const { return path_; }

  // The path of `name` inside the folder.
  std::string operator/(const std::string& name) const { return path_ + "/" + name; }

 private:
  [[nodiscard]] bool make(const std::string& parent);

  std::string path_;
  Descriptor lock_;
};

// Removes the abandoned folders of this user's killed commands from the same place. What cannot be
// removed stays.
void removeAbandonedFolders(const std::string& parent = "");

}  // namespace tools

#endif
