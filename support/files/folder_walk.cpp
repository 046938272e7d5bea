#include "support/files/folder_walk.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>

static const int kItself = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC;

Folder openFolder(const char* path) {
  return Folder(opendir(path));
}

Folder openFolderWithoutLink(const char* path) {
  Descriptor handle = openFolderItself(path);
  Folder folder(handle.isOpen() ? fdopendir(handle.get()) : nullptr);
  if (folder != nullptr) {
    handle.release();
  }
  return folder;
}

Descriptor openFolderItself(const char* path) {
  // A trailing slash would make the open follow a link.
  std::string itself(path);
  while (itself.size() > 1 && itself.back() == '/') {
    itself.pop_back();
  }
  return Descriptor(open(itself.c_str(), kItself));
}

Descriptor openFolderIn(const Descriptor& parent, const char* name) {
  return Descriptor(openat(parent.get(), name, kItself));
}

Descriptor secondDescriptorOf(const Descriptor& folder) {
  return Descriptor(fcntl(folder.get(), F_DUPFD_CLOEXEC, 0));
}

Folder openListing(const Descriptor& folder) {
  Descriptor handle = secondDescriptorOf(folder);
  lseek(handle.get(), 0, SEEK_SET);
  Folder listing(handle.isOpen() ? fdopendir(handle.get()) : nullptr);
  if (listing != nullptr) {
    handle.release();
  }
  return listing;
}

bool listNames(Folder folder, std::vector<std::string>* names) {
  if (folder == nullptr) {
    return false;
  }
  for (;;) {
    errno = 0;
    const dirent* entry = readdir(folder.get());
    if (entry == nullptr) {
      return errno == 0;
    }
    const char* name = entry->d_name;
    if (strcmp(name, ".") != 0 && strcmp(name, "..") != 0) {
      names->emplace_back(name);
    }
  }
}

std::vector<std::string> allNames(Folder folder) {
  std::vector<std::string> names;
  static_cast<void>(listNames(std::move(folder), &names));
  return names;
}

bool isShortDotName(const std::string& name) {
  return name[0] == '.' && name.size() < 3;
}

std::vector<std::string> namesToWalk(Folder folder) {
  std::vector<std::string> names = allNames(std::move(folder));
  names.erase(std::remove_if(names.begin(), names.end(), isShortDotName), names.end());
  return names;
}

long countEntries(const char* path) {
  const Folder folder = openFolder(path);
  long count = 0;
  while (folder != nullptr && readdir(folder.get()) != nullptr) {
    ++count;
  }
  return count;
}
