// Downloads a URL to a file as the product does, and prints what downloadFile() returned and the
// largest amount of memory that the process has held: "returned N", "peak-kilobytes N".
//
// Usage: download_driver URL FILE
#include <sys/resource.h>

#include <cstdio>

#include "support/network/downloader.h"

int main(int argc, char** argv) {
  if (argc != 3) {
    fputs("usage: download_driver URL FILE\n", stderr);
    return 2;
  }
  printf("returned %d\n", downloadFile(argv[1], argv[2]));
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  printf("peak-kilobytes %ld\n", usage.ru_maxrss);
  return 0;
}
