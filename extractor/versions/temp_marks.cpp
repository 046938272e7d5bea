#include "extractor/versions/temp_marks.h"

#include <sys/file.h>
#include <unistd.h>

#include "support/files/folder_walk.h"

// An installation makes five temporary folders. The system closes what is left at the end.
static int marks[8];
static int markCount = 0;

Descriptor markFolder(const char* path) {
  Descriptor folder = openFolderItself(path);
  if (folder.isOpen()) {
    flock(folder.get(), LOCK_SH | LOCK_NB);
  }
  return folder;
}

void markTempFolder(const char* path) {
  Descriptor folder = markFolder(path);
  if (folder.isOpen() && markCount < static_cast<int>(sizeof marks / sizeof marks[0])) {
    marks[markCount++] = folder.release();
  }
}

void releaseMarks() {
  while (markCount > 0) {
    close(marks[--markCount]);
  }
}

bool isAbandoned(const char* path) {
  const Descriptor folder = openFolderItself(path);
  return folder.isOpen() && flock(folder.get(), LOCK_EX | LOCK_NB) == 0;
}
