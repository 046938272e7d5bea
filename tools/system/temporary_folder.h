#ifndef QUORVANE_TOOLS_SYSTEM_TEMPORARY_FOLDER_H
#define QUORVANE_TOOLS_SYSTEM_TEMPORARY_FOLDER_H

#include <string>

namespace tools {

// A new empty folder in the system's temporary folder or another one, removed with all its contents
// at the end. Throws InputError if it cannot be created.
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
  std::string path_;
};

}  // namespace tools

#endif
