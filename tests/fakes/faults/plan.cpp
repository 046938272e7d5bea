// A library to be preloaded that makes one call fail, or the process die there. QUORVANE_FAULT is
// KIND:N:ERROR or KIND:N:kill: the N-th call of that kind (from 1) fails with that error number, or
// ends the process at once. With N = 0 nothing fails. The number of calls of the kind is kept in
// the first eight bytes of the file that QUORVANE_FAULT_COUNT names. Only the process whose program
// is named "Setup" is meddled with.
//
// Kinds: open, write, rename, mkdir, chmod, read, spawn, malloc.

#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

extern "C" void* __libc_malloc(size_t);
extern "C" void* __libc_calloc(size_t, size_t);
extern "C" void* __libc_realloc(void*, size_t);

namespace {

struct Plan {
  char kind[16];
  uint64_t at;
  int error;  // -1 for kill
  volatile uint64_t* count;
};

Plan plan{};
bool active = false;

// The library's own work is not counted.
__thread bool inside = false;

bool readPlan() {
  const char* text = getenv("QUORVANE_FAULT");
  const char* colon = text == nullptr ? nullptr : strchr(text, ':');
  if (colon == nullptr || strcmp(program_invocation_short_name, "Setup") != 0) {
    return false;
  }
  memcpy(plan.kind, text, static_cast<size_t>(colon - text));
  char* end = nullptr;
  plan.at = strtoull(colon + 1, &end, 10);
  plan.error = strcmp(end, ":kill") == 0 ? -1 : atoi(end + 1);
  const int file = open(getenv("QUORVANE_FAULT_COUNT"), O_RDWR | O_CREAT, 0600);
  if (file < 0 || ftruncate(file, 8) != 0) {
    return false;
  }
  void* page = mmap(nullptr, 8, PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
  close(file);
  plan.count = static_cast<volatile uint64_t*>(page);
  return page != MAP_FAILED;
}

__attribute__((constructor)) void prepare() {
  inside = true;
  active = readPlan();
  inside = false;
}

// Counts a call; returns whether it has to fail, with errno set.
bool fails(const char* kind) {
  if (!active || inside || strcmp(plan.kind, kind) != 0) {
    return false;
  }
  const uint64_t count = *plan.count + 1;
  *plan.count = count;
  if (count != plan.at) {
    return false;
  }
  if (plan.error < 0) {
    kill(getpid(), SIGKILL);
  }
  errno = plan.error;
  return true;
}

template <typename Function>
Function real(const char* name) {
  inside = true;
  auto function = reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
  inside = false;
  return function;
}

bool isOutput(FILE* stream) {
  return stream == stdout || stream == stderr;
}

}  // namespace

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

FILE* fopen(const char* path, const char* mode) {
  static const auto next = real<FILE* (*)(const char*, const char*)>("fopen");
  return fails("open") ? nullptr : next(path, mode);
}

FILE* fopen64(const char* path, const char* mode) {
  static const auto next = real<FILE* (*)(const char*, const char*)>("fopen64");
  return fails("open") ? nullptr : next(path, mode);
}

DIR* opendir(const char* path) {
  static const auto next = real<DIR* (*)(const char*)>("opendir");
  return fails("open") ? nullptr : next(path);
}

ssize_t write(int handle, const void* bytes, size_t size) {
  static const auto next = real<ssize_t (*)(int, const void*, size_t)>("write");
  return handle > STDERR_FILENO && fails("write") ? -1 : next(handle, bytes, size);
}

size_t fwrite(const void* bytes, size_t size, size_t count, FILE* stream) {
  static const auto next = real<size_t (*)(const void*, size_t, size_t, FILE*)>("fwrite");
  return !isOutput(stream) && fails("write") ? 0 : next(bytes, size, count, stream);
}

ssize_t read(int handle, void* bytes, size_t size) {
  static const auto next = real<ssize_t (*)(int, void*, size_t)>("read");
  return fails("read") ? -1 : next(handle, bytes, size);
}

size_t fread(void* bytes, size_t size, size_t count, FILE* stream) {
  static const auto next = real<size_t (*)(void*, size_t, size_t, FILE*)>("fread");
  return fails("read") ? 0 : next(bytes, size, count, stream);
}

int rename(const char* from, const char* to) {
  static const auto next = real<int (*)(const char*, const char*)>("rename");
  return fails("rename") ? -1 : next(from, to);
}

int renameat2(int fromFolder, const char* from, int toFolder, const char* to, unsigned flags) {
  static const auto next = real<int (*)(int, const char*, int, const char*, unsigned)>("renameat2");
  return fails("rename") ? -1 : next(fromFolder, from, toFolder, to, flags);
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

int posix_spawn(pid_t* child, const char* path, const posix_spawn_file_actions_t* actions,
                const posix_spawnattr_t* attributes, char* const* words, char* const* environment) {
  static const auto next =
      real<int (*)(pid_t*, const char*, const posix_spawn_file_actions_t*, const posix_spawnattr_t*,
                   char* const*, char* const*)>("posix_spawn");
  return fails("spawn") ? errno : next(child, path, actions, attributes, words, environment);
}

FILE* popen(const char* command, const char* mode) {
  static const auto next = real<FILE* (*)(const char*, const char*)>("popen");
  return fails("spawn") ? nullptr : next(command, mode);
}

void* malloc(size_t size) {
  return fails("malloc") ? nullptr : __libc_malloc(size);
}

void* calloc(size_t count, size_t size) {
  return fails("malloc") ? nullptr : __libc_calloc(count, size);
}

void* realloc(void* block, size_t size) {
  return fails("malloc") ? nullptr : __libc_realloc(block, size);
}

}  // extern "C"
