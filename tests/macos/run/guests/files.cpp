// What files look like: files ORDER FOLDER.
#include <dirent.h>
#include <fcntl.h>
#include <fts.h>
#include <ftw.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <sys/stdio.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <string>

static std::string folder;

static std::string in(const char* name) {
  return folder + "/" + name;
}

static void showStatus(const char* name) {
  struct stat status;
  if (lstat(in(name).c_str(), &status) != 0) {
    printf("%s: error %d\n", name, errno);
    return;
  }
  printf("%s: mode %o links %d size %lld owner %d changed %ld.%09ld\n", name, status.st_mode,
         status.st_nlink, status.st_size, status.st_uid == getuid(), status.st_mtimespec.tv_sec,
         status.st_mtimespec.tv_nsec);
}

static void showStatuses() {
  showStatus("file");
  showStatus("folder");
  showStatus("link");
  showStatus("missing");
  struct stat one, other;
  stat(in("link").c_str(), &one);
  fstatat(AT_FDCWD, in("file").c_str(), &other, 0);
  printf("same file %d\n", one.st_ino == other.st_ino && one.st_dev == other.st_dev);
}

static void showError(const char* what, long result) {
  printf("%s %d\n", what, result < 0 ? errno : 0);
}

static void showErrors() {
  const std::string tooLong(1024, 'x');
  showError("open missing", open(in("missing").c_str(), O_RDONLY));
  showError("exclusive", open(in("file").c_str(), O_WRONLY | O_CREAT | O_EXCL, 0644));
  showError("link to file", open(in("link").c_str(), O_RDONLY | O_NOFOLLOW));
  showError("link as folder", open(in("folder-link").c_str(), O_RDONLY | O_NOFOLLOW | O_DIRECTORY));
  showError("file as folder", open(in("file").c_str(), O_RDONLY | O_DIRECTORY));
  showError("loop", open(in("loop").c_str(), O_RDONLY));
  showError("too long", access(tooLong.c_str(), F_OK));
  showError("rmdir not empty", rmdir(in("folder").c_str()));
  showError("unlink folder", unlink(in("folder").c_str()));
  showError("unlinkat folder", unlinkat(AT_FDCWD, in("folder").c_str(), 0));
  showError("rename exclusive", renamex_np(in("link").c_str(), in("file").c_str(), RENAME_EXCL));
  showError("close", close(-1));
  printf("%s\n", strerror(66));
}

static void showFolder() {
  DIR* entries = opendir(in("folder").c_str());
  while (const dirent* entry = readdir(entries)) {
    if (entry->d_name[0] != '.') {
      printf("entry %s length %d kind %d\n", entry->d_name, entry->d_namlen, entry->d_type);
    }
  }
  closedir(entries);
}

static int showVisit(const char* path, const struct stat* status, int kind, FTW* place) {
  printf("visit %s kind %d level %d folder %d\n", path + folder.size(), kind, place->level,
         S_ISDIR(status->st_mode));
  return 0;
}

static void showTree() {
  nftw(in("folder").c_str(), showVisit, 8, FTW_PHYS | FTW_DEPTH);
  char* paths[] = {const_cast<char*>(folder.c_str()), nullptr};
  FTS* tree = fts_open(paths, FTS_PHYSICAL | FTS_NOCHDIR, nullptr);
  while (FTSENT* entry = fts_read(tree)) {
    if (strcmp(entry->fts_name, "inner") == 0) {
      printf("fts %s kind %d level %d size %lld\n", entry->fts_path + folder.size(),
             entry->fts_info, entry->fts_level, entry->fts_statp->st_size);
    }
  }
  fts_close(tree);
}

static void changeFiles() {
  const int file = open(in("new").c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0640);
  printf("written %zd flags %d\n", write(file, "text", 4), fcntl(file, F_GETFD) == FD_CLOEXEC);
  close(file);
  const int more = open(in("new").c_str(), O_WRONLY | O_APPEND);
  write(more, "s", 1);
  close(more);
  const int outer = open(folder.c_str(), O_RDONLY | O_DIRECTORY);
  struct stat status;
  fstatat(outer, "new", &status, AT_SYMLINK_NOFOLLOW);
  printf("size %lld mode %o\n", status.st_size, status.st_mode & 07777);
  printf("swap %d\n", renamex_np(in("new").c_str(), in("file").c_str(), RENAME_SWAP));
  stat(in("file").c_str(), &status);
  printf("size %lld\n", status.st_size);
  printf("removed %d %d\n", unlinkat(outer, "new", 0), unlinkat(outer, "empty", AT_REMOVEDIR));
}

static void showVolume() {
  struct statvfs volume;
  if (statvfs(folder.c_str(), &volume) != 0) {
    return;
  }
  printf("page %ld\n", sysconf(_SC_PAGESIZE));
  printf("block %lu blocks %u name %lu flags %lu\n", volume.f_frsize, volume.f_blocks,
         volume.f_namemax, volume.f_flag);
  printf("missing %d", statvfs(in("missing").c_str(), &volume));
  printf(" error %d\n", errno);
}

static void linkFiles() {
  const int outer = open(folder.c_str(), O_RDONLY | O_DIRECTORY);
  struct stat status;
  printf("linked %d", linkat(outer, "file", AT_FDCWD, in("second").c_str(), 0));
  printf(" links %d\n", stat(in("second").c_str(), &status) == 0 ? status.st_nlink : 0);
  printf("again %d", linkat(outer, "file", outer, "second", 0));
  printf(" error %d\n", errno);
  linkat(outer, "link", outer, "followed", AT_SYMLINK_FOLLOW);
  linkat(outer, "link", outer, "same", 0);
  printf("followed %d", lstat(in("followed").c_str(), &status) == 0 && S_ISREG(status.st_mode));
  printf(" same %d\n", lstat(in("same").c_str(), &status) == 0 && S_ISLNK(status.st_mode));
}

int main(int, char** argv) {
  folder = argv[2];
  const std::string order = argv[1];
  if (order == "statuses") {
    showStatuses();
  } else if (order == "errors") {
    showErrors();
  } else if (order == "folder") {
    showFolder();
  } else if (order == "tree") {
    showTree();
  } else if (order == "changes") {
    changeFiles();
  } else if (order == "volume") {
    showVolume();
  } else if (order == "links") {
    linkFiles();
  }
}
