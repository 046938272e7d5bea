#include "archive/destination.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstring>
#include <string>
#include <utility>

#include "archive/entry.h"
#include "support/files/file_kind.h"
#include "support/files/file_operations.h"
#include "support/files/folder_walk.h"
#include "support/files/paths.h"

static const char kThroughLink[] = "path passes through a symbolic link";

Destination openDestination(const char* path) {
  return {path, openFolderItself(path)};
}

// The type bits of `name` in `parent`, 0 if it does not exist.
static mode_t typeOf(const Descriptor& parent, const char* name) {
  struct stat status {};
  if (fstatat(parent.get(), name, &status, AT_SYMLINK_NOFOLLOW) != 0) {
    return 0;
  }
  return status.st_mode & S_IFMT;
}

void refuseLink(const Descriptor& parent, const char* name, const char* path) {
  if (typeOf(parent, name) == S_IFLNK) {
    refuseEntry(path, kThroughLink);
  }
}

bool holds(const Descriptor& parent, const char* name) {
  const mode_t type = typeOf(parent, name);
  return type != 0 && type != S_IFLNK;
}

void refuseMovedFolder(const Descriptor& parent, const char* target, const char* path) {
  const Block<char> folder(getAbsoluteExeDir(target));
  struct stat open {};
  struct stat there {};
  const char* above = folder.get()[0] == 0 ? "/" : folder.get();
  if (fstat(parent.get(), &open) != 0 || stat(above, &there) != 0 || open.st_dev != there.st_dev ||
      open.st_ino != there.st_ino) {
    refuseEntry(path, "its folder was moved away");
  }
}

// Creates the folder `name`, whose full path is `target`, and sets its mode whether or not it could
// be created, as makeDir() does.
static void makeFolder(const Descriptor& parent, const char* name, const char* target) {
  mkdirat(parent.get(), name, 0777);
  const int flags = O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC;
  const Descriptor made(openat(parent.get(), name, flags));
  chmod777(made.get(), target);
}

// Opens the folder `name`, creating it first if it does not exist.
static Descriptor enterFolder(const Descriptor& parent, const char* name, const char* target,
                              const char* path) {
  Descriptor folder = openFolderIn(parent, name);
  if (folder.isOpen()) {
    return folder;
  }
  refuseLink(parent, name, path);
  makeFolder(parent, name, target);
  return openFolderIn(parent, name);
}

static bool isSelf(const std::string& name) {
  return name.empty() || name == ".";
}

Descriptor openEntryFolder(const Destination& destination, const char* path) {
  if (!destination.folder.isOpen() && isLink(destination.path)) {
    refuseEntry(path, kThroughLink);
  }
  Descriptor folder;
  bool isBelow = false;
  const char* component = path;
  while (const char* separator = strchr(component, '/')) {
    const std::string name(component, separator);
    const std::string until(path, separator);
    component = separator + 1;
    if (!isSelf(name)) {
      char target[PATH_BUFFER_SIZE];
      setPath(target, destination.path, until.c_str());
      folder = enterFolder(isBelow ? folder : destination.folder, name.c_str(), target, path);
      isBelow = true;
    }
  }
  return isBelow ? std::move(folder) : secondDescriptorOf(destination.folder);
}

// An empty path names the destination folder itself.
static bool createDestination(Destination* destination) {
  if (!destination->folder.isOpen() && makeDir(destination->path) == 0) {
    *destination = openDestination(destination->path);
  }
  return destination->folder.isOpen();
}

bool createFolder(Destination* destination, const Descriptor& parent, const char* path,
                  const char* target) {
  const char* name = pathToFile(path);
  if (path[0] == 0) {
    return createDestination(destination);
  }
  return parent.isOpen() && (isSelf(name) || enterFolder(parent, name, target, path).isOpen());
}

Descriptor createFile(const Descriptor& parent, const char* name, const char* path) {
  const int flags = O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;
  Descriptor file(openat(parent.get(), name, flags, 0755));
  if (!file.isOpen() && errno == EEXIST) {
    refuseLink(parent, name, path);
    removeFile(parent, name);
    file.reset(openat(parent.get(), name, flags, 0755));
  }
  return file;
}

void removeFile(const Descriptor& parent, const char* name) {
  const mode_t type = typeOf(parent, name);
  if (type != 0 && type != S_IFDIR) {
    unlinkat(parent.get(), name, 0);
  }
}
