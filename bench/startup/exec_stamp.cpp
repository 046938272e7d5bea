// Prints the monotonic clock and becomes another program at once, so that both ends of a start are
// read from the same clock.
//
//   exec_stamp PROGRAM ARGUMENT...     prints "exec NANOSECONDS" first

#include <time.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>

int main(int argc, char** argv) {
  if (argc < 2) {
    return 2;
  }
  timespec now{};
  clock_gettime(CLOCK_MONOTONIC, &now);
  char line[64];
  const int length = snprintf(line, sizeof line, "exec %lld%09ld\n",
                              static_cast<long long>(now.tv_sec), now.tv_nsec);
  if (write(STDOUT_FILENO, line, static_cast<size_t>(length)) != length) {
    return 2;
  }
  execv(argv[1], argv + 1);
  perror(argv[1]);
  return 2;
}
