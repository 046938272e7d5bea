// Calls what the runner does not have where it is told to; the rest runs all the same.
extern "C" {
#include <fmtmsg.h>
}

#include <cstdio>
#include <cstring>

int main(int argc, char** argv) {
  puts("before");
  fflush(stdout);
  if (argc > 1 && strcmp(argv[1], "call") == 0) {
    fmtmsg(0, "label", 0, "text", "action", "tag");
  }
  puts("after");
}
