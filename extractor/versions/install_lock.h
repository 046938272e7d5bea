#ifndef QUORVANE_EXTRACTOR_VERSIONS_INSTALL_LOCK_H
#define QUORVANE_EXTRACTOR_VERSIONS_INSTALL_LOCK_H

#include <string>

// Keeps installers of one application apart: whoever changes version folders holds the lock of the
// master folder. The system releases it when its process dies, however that happens. Main thread.
class InstallLock {
 public:
  enum class Wait { TenMinutes, OneMinute, Never };

  // Waits until no other installer holds the lock, as long as `wait` says; says so in the log when
  // it has to wait. Or never waits, and says nothing. Without the right to create the lock's file
  // there is no lock.
  explicit InstallLock(const char* masterFolder, Wait wait = Wait::TenMinutes);
  ~InstallLock();
  InstallLock(const InstallLock&) = delete;
  InstallLock& operator=(const InstallLock&) = delete;

  // Whether this process holds the lock.
  [[nodiscard]] bool isHeld() const { return handle_ >= 0; }

  // Whether the wait, if any, ended with another installer still at work.
  [[nodiscard]] bool isHeldByAnother() const { return anothers_; }

  // Lets go of the lock before the end of the scope; does nothing where it is not held.
  void release();

 private:
  void giveUp(Wait wait);

  int handle_ = -1;
  bool anothers_ = false;
};

// Returns the names of the master folder's version folders, and what tells each from another one
// put into its place, in one text, to be compared with a later one. Logs nothing.
std::string versionFoldersIn(const char* masterFolder);

#endif
