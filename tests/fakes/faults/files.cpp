// Calls on files and folders by path or descriptor, that tests/fakes/faults/plan.cpp may let fail.

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdarg>
#include <cstdio>

#include "tests/fakes/faults/plan.h"

extern "C" {

int open(const char* path, int flags, ...) {
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = va_arg(arguments, mode_t);
  va_end(arguments);
  static const auto next = real<int (*)(const char*, int, ...)>("open");
  return fails("open") ? -1 : next(path, flags, mode);
}

int open64(const char* path, int flags, ...) {
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = va_arg(arguments, mode_t);
  va_end(arguments);
  static const auto next = real<int (*)(const char*, int, ...)>("open64");
  return fails("open") ? -1 : next(path, flags, mode);
}

int openat(int folder, const char* path, int flags, ...) {
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = va_arg(arguments, mode_t);
  va_end(arguments);
  static const auto next = real<int (*)(int, const char*, int, ...)>("openat");
  return fails("open") ? -1 : next(folder, path, flags, mode);
}

int openat64(int folder, const char* path, int flags, ...) {
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = va_arg(arguments, mode_t);
  va_end(arguments);
  static const auto next = real<int (*)(int, const char*, int, ...)>("openat64");
  return fails("open") ? -1 : next(folder, path, flags, mode);
}

DIR* opendir(const char* path) {
  static const auto next = real<DIR* (*)(const char*)>("opendir");
  return fails("open") ? nullptr : next(path);
}

DIR* fdopendir(int handle) {
  static const auto next = real<DIR* (*)(int)>("fdopendir");
  return fails("open") ? nullptr : next(handle);
}

dirent* readdir(DIR* folder) {
  static const auto next = real<dirent* (*)(DIR*)>("readdir");
  return fails("list") ? nullptr : next(folder);
}

dirent64* readdir64(DIR* folder) {
  static const auto next = real<dirent64* (*)(DIR*)>("readdir64");
  return fails("list") ? nullptr : next(folder);
}

ssize_t read(int handle, void* bytes, size_t size) {
  static const auto next = real<ssize_t (*)(int, void*, size_t)>("read");
  return fails("read") ? -1 : next(handle, bytes, size);
}

ssize_t pread(int handle, void* bytes, size_t size, off_t offset) {
  static const auto next = real<ssize_t (*)(int, void*, size_t, off_t)>("pread");
  return fails("read") ? -1 : next(handle, bytes, size, offset);
}

ssize_t pread64(int handle, void* bytes, size_t size, off64_t offset) {
  static const auto next = real<ssize_t (*)(int, void*, size_t, off64_t)>("pread64");
  return fails("read") ? -1 : next(handle, bytes, size, offset);
}

ssize_t write(int handle, const void* bytes, size_t size) {
  static const auto next = real<ssize_t (*)(int, const void*, size_t)>("write");
  return handle > STDERR_FILENO && fails("write") ? -1 : next(handle, bytes, size);
}

int ftruncate(int handle, off_t size) {
  static const auto next = real<int (*)(int, off_t)>("ftruncate");
  return fails("write") ? -1 : next(handle, size);
}

int ftruncate64(int handle, off64_t size) {
  static const auto next = real<int (*)(int, off64_t)>("ftruncate64");
  return fails("write") ? -1 : next(handle, size);
}

// Fails as on a disk that notices only then that it could not write: closed it is all the same.
int close(int handle) {
  static const auto next = real<int (*)(int)>("close");
  if (fails("close")) {
    const int error = errno;
    next(handle);
    errno = error;
    return -1;
  }
  return next(handle);
}

int rename(const char* from, const char* to) {
  static const auto next = real<int (*)(const char*, const char*)>("rename");
  return fails("rename") ? -1 : next(from, to);
}

int renameat2(int fromFolder, const char* from, int toFolder, const char* to, unsigned flags) {
  static const auto next = real<int (*)(int, const char*, int, const char*, unsigned)>("renameat2");
  return fails("rename") ? -1 : next(fromFolder, from, toFolder, to, flags);
}

int renameat(int fromFolder, const char* from, int toFolder, const char* to) {
  static const auto next = real<int (*)(int, const char*, int, const char*)>("renameat");
  return fails("rename") ? -1 : next(fromFolder, from, toFolder, to);
}

int unlink(const char* path) {
  static const auto next = real<int (*)(const char*)>("unlink");
  return fails("delete") ? -1 : next(path);
}

int unlinkat(int folder, const char* path, int flags) {
  static const auto next = real<int (*)(int, const char*, int)>("unlinkat");
  return fails("delete") ? -1 : next(folder, path, flags);
}

int remove(const char* path) {
  static const auto next = real<int (*)(const char*)>("remove");
  return fails("delete") ? -1 : next(path);
}

int rmdir(const char* path) {
  static const auto next = real<int (*)(const char*)>("rmdir");
  return fails("delete") ? -1 : next(path);
}

int symlink(const char* target, const char* path) {
  static const auto next = real<int (*)(const char*, const char*)>("symlink");
  return fails("link") ? -1 : next(target, path);
}

int link(const char* from, const char* to) {
  static const auto next = real<int (*)(const char*, const char*)>("link");
  return fails("link") ? -1 : next(from, to);
}

int symlinkat(const char* target, int folder, const char* path) {
  static const auto next = real<int (*)(const char*, int, const char*)>("symlinkat");
  return fails("link") ? -1 : next(target, folder, path);
}

int linkat(int fromFolder, const char* from, int toFolder, const char* to, int flags) {
  static const auto next = real<int (*)(int, const char*, int, const char*, int)>("linkat");
  return fails("link") ? -1 : next(fromFolder, from, toFolder, to, flags);
}

int mkdir(const char* path, mode_t mode) {
  static const auto next = real<int (*)(const char*, mode_t)>("mkdir");
  return fails("mkdir") ? -1 : next(path, mode);
}

int mkdirat(int folder, const char* path, mode_t mode) {
  static const auto next = real<int (*)(int, const char*, mode_t)>("mkdirat");
  return fails("mkdir") ? -1 : next(folder, path, mode);
}

int chmod(const char* path, mode_t mode) {
  static const auto next = real<int (*)(const char*, mode_t)>("chmod");
  return fails("chmod") ? -1 : next(path, mode);
}

int fchmod(int handle, mode_t mode) {
  static const auto next = real<int (*)(int, mode_t)>("fchmod");
  return fails("chmod") ? -1 : next(handle, mode);
}

int fchmodat(int folder, const char* path, mode_t mode, int flags) {
  static const auto next = real<int (*)(int, const char*, mode_t, int)>("fchmodat");
  return fails("chmod") ? -1 : next(folder, path, mode, flags);
}

int stat(const char* path, struct stat* status) {
  static const auto next = real<int (*)(const char*, struct stat*)>("stat");
  return fails("look") ? -1 : next(path, status);
}

int stat64(const char* path, struct stat64* status) {
  static const auto next = real<int (*)(const char*, struct stat64*)>("stat64");
  return fails("look") ? -1 : next(path, status);
}

int lstat(const char* path, struct stat* status) {
  static const auto next = real<int (*)(const char*, struct stat*)>("lstat");
  return fails("look") ? -1 : next(path, status);
}

int lstat64(const char* path, struct stat64* status) {
  static const auto next = real<int (*)(const char*, struct stat64*)>("lstat64");
  return fails("look") ? -1 : next(path, status);
}

int fstat(int handle, struct stat* status) {
  static const auto next = real<int (*)(int, struct stat*)>("fstat");
  return fails("look") ? -1 : next(handle, status);
}

int fstat64(int handle, struct stat64* status) {
  static const auto next = real<int (*)(int, struct stat64*)>("fstat64");
  return fails("look") ? -1 : next(handle, status);
}

int fstatat64(int folder, const char* path, struct stat64* status, int flags) {
  static const auto next = real<int (*)(int, const char*, struct stat64*, int)>("fstatat64");
  return fails("look") ? -1 : next(folder, path, status, flags);
}

int access(const char* path, int mode) {
  static const auto next = real<int (*)(const char*, int)>("access");
  return fails("look") ? -1 : next(path, mode);
}

ssize_t readlink(const char* path, char* target, size_t size) {
  static const auto next = real<ssize_t (*)(const char*, char*, size_t)>("readlink");
  return fails("look") ? -1 : next(path, target, size);
}

ssize_t readlinkat(int folder, const char* path, char* target, size_t size) {
  static const auto next = real<ssize_t (*)(int, const char*, char*, size_t)>("readlinkat");
  return fails("look") ? -1 : next(folder, path, target, size);
}

}  // extern "C"
