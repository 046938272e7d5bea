#ifndef QUORVANE_PLATFORM_GNUSTEP_PARTIAL_FILE_H
#define QUORVANE_PLATFORM_GNUSTEP_PARTIAL_FILE_H

#include <cstddef>
#include <string>

// A file that grows beside its target under a temporary name and takes the target's name when it is
// complete. An incomplete file is removed. Nothing is logged; a failed call leaves the reason in
// errno. One thread.
class PartialFile {
 public:
  PartialFile() = default;
  ~PartialFile();
  PartialFile(const PartialFile&) = delete;
  PartialFile& operator=(const PartialFile&) = delete;

  // Creates the empty file beside `target`, with the permissions of an ordinary new file, and
  // removes those left there by processes that have ended since.
  [[nodiscard]] bool create(const std::string& target);
  [[nodiscard]] bool isOpen() const { return handle_ >= 0; }

  [[nodiscard]] bool write(const char* bytes, size_t size);

  // Closes the file and atomically gives it the target's name, replacing an existing file if
  // `replace` is set. On failure the partial file is removed.
  [[nodiscard]] bool complete(bool replace);

  // Closes and removes the file; does nothing if there is none.
  void discard();

 private:
  std::string target_;
  std::string path_;
  int handle_ = -1;
};

#endif
