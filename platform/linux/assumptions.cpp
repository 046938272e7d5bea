// What the shared sources rely on where macOS and Linux differ, checked by the compiler.

#include <dirent.h>
#include <limits.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <tomcrypt.h>

#include <ctime>
#include <type_traits>

static_assert(sizeof(long) == 8 && sizeof(void*) == 8, "the system is a 64-bit one");
static_assert(sizeof(off_t) == 8, "a file may be larger than 4 GB");
static_assert(std::is_same_v<time_t, long>, "seconds are printed as a long");
static_assert(sizeof(suseconds_t) <= sizeof(long), "microseconds fit a long");
static_assert(std::is_same_v<decltype(stat::st_mtim), timespec>, "times have nanoseconds");
static_assert(sizeof(stat::st_size) == 8, "a file's size may be more than 4 GB");
static_assert(sizeof(ino_t) == 8, "folder entries are those with 64-bit file numbers");
static_assert(sizeof(dirent::d_name) > NAME_MAX, "the longest file name fits a folder entry");
static_assert(PATH_MAX <= 4096, "a path of the system's fits a path buffer");
static_assert(sizeof(hash_state) == 416, "LibTomCrypt keeps the size of its state");
