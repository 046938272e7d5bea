#include "support/files/held_folder.h"

#include <sys/stat.h>

#include <utility>

#include "support/files/folder_walk.h"

bool hold(Descriptor folder, HeldFolder* held) {
  struct stat status {};
  if (fstat(folder.get(), &status) != 0) {
    return false;
  }
  held->device = status.st_dev;
  held->file = status.st_ino;
  held->folder = std::move(folder);
  return true;
}

// Opens the folder above `below`; the result is not open unless that is `above`.
static Descriptor openAbove(const HeldFolder& above, const Descriptor& below) {
  Descriptor parent = openFolderIn(below, "..");
  struct stat status {};
  const bool isSame = fstat(parent.get(), &status) == 0 && status.st_dev == above.device &&
                      status.st_ino == above.file;
  return isSame ? std::move(parent) : Descriptor();
}

void letGo(HeldFolder* above, const Descriptor& below) {
  if (openAbove(*above, below).isOpen()) {
    above->folder.reset(-1);
  }
}

bool comeBack(HeldFolder* above, const Descriptor& below) {
  if (!above->folder.isOpen()) {
    above->folder = openAbove(*above, below);
  }
  return above->folder.isOpen();
}
