// What the shared sources rely on where macOS and Linux differ, checked by the compiler.

#include <dirent.h>
#include <limits.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <tomcrypt.h>

#include <cstdint>
#include <ctime>
#include <type_traits>

// Sizes in archives and files are long and off_t; both hold more than 4 GB.
static_assert(sizeof(long) == 8 && sizeof(void*) == 8, "the system is a 64-bit one");
static_assert(sizeof(off_t) == 8, "a file may be larger than 4 GB");

// Seconds are printed with %ld; microseconds, an int here and a long on Linux, are converted first.
static_assert(std::is_same_v<time_t, long>, "seconds are printed as a long");
static_assert(sizeof(suseconds_t) <= sizeof(long), "microseconds fit a long");

// 64-bit numbers are an unsigned long long here and an unsigned long on Linux, so they are printed
// after a conversion and never given to a function that is overloaded on both.
static_assert(std::is_same_v<uint64_t, unsigned long long>, "a uint64_t is never printed with %lu");

// struct stat has its times as timespec under another name; st_mtime is the seconds in both.
static_assert(std::is_same_v<decltype(stat::st_mtimespec), timespec>, "times have nanoseconds");
static_assert(sizeof(stat::st_size) == 8, "a file's size may be more than 4 GB");
static_assert(sizeof(ino_t) == 8, "folder entries are those with 64-bit file numbers");

// A name ends with a zero byte in both, and in both a longest name fits.
static_assert(sizeof(dirent::d_name) > NAME_MAX, "the longest file name fits a folder entry");

// Path buffers are larger than the longest path that the system takes.
static_assert(PATH_MAX <= 4096, "a path of the system's fits a path buffer");

// The size of LibTomCrypt's own hash states; the Keccak state follows it.
static_assert(sizeof(hash_state) == 416, "LibTomCrypt keeps the size of its state");
