#ifndef QUORVANE_TESTS_SUPPORT_TEMP_FOLDER_H
#define QUORVANE_TESTS_SUPPORT_TEMP_FOLDER_H

#include <string>

namespace test {

// A fresh empty folder below the build folder, removed with all it holds at the end.
class TempFolder {
 public:
  TempFolder();
  ~TempFolder();
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;

  const std::string& path() const { return path_; }
  // The path of `name` inside the folder.
  std::string operator/(const std::string& name) const { return path_ + "/" + name; }

 private:
  std::string path_;
};

}  // namespace test

#endif
