#ifndef QUORVANE_EXTRACTOR_VERSIONS_INSTALL_LOCK_H
#define QUORVANE_EXTRACTOR_VERSIONS_INSTALL_LOCK_H

#include <string>

// Serialises installers of one application: a process holds the lock of the master folder while it
// changes version folders. The system releases it when its process dies, however that happens. Main
// thread.
class InstallLock {
 public:
  enum class Wait { TenMinutes, OneMinute, Never };

  // Waits until no other installer holds the lock, for as long as `wait` says; logs that it waits.
  // Or does not wait, and logs nothing. Without permission to create the lock's file there is no
  // lock.
  explicit InstallLock(const char* masterFolder, Wait wait = Wait::TenMinutes);
  ~InstallLock();
  InstallLock(const InstallLock&) = delete;
  InstallLock& operator=(const InstallLock&) = delete;

  // Whether this process holds the lock.
  [[nodiscard]] bool isHeld() const { return handle_ >= 0; }

  // Whether the wait, if any, ended while another installer was still running.
  [[nodiscard]] bool isHeldByAnother() const { return anothers_; }

  // Releases the lock before the end of the scope; does nothing if it is not held.
  void release();

 private:
  void giveUp(Wait wait);

  int handle_ = -1;
  bool anothers_ = false;
};

// Returns one text with the names of the master folder's version folders, and what distinguishes
// each from a replacement, for comparison with a later one. Logs nothing.
std::string versionFoldersIn(const char* masterFolder);

#endif
