// Prints what it was started with, and ends with status 7 through exit(), after its exit handlers.
#include <mach-o/dyld.h>

#include <cstdio>
#include <cstdlib>

static void sayFirst() {
  puts("handler 1");
}

static void saySecond() {
  puts("handler 2");
}

int main(int argc, char** argv, char** environment, char** apple) {
  char path[1024];
  uint32_t size = sizeof path;
  const bool fits = _NSGetExecutablePath(path, &size) == 0;
  printf("count %d\n", argc);
  for (int i = 0; i < argc; ++i) {
    printf("argument %s\n", argv[i]);
  }
  printf("end of arguments %d, environment %d\n", argv[argc] == nullptr, environment[0] != nullptr);
  printf("apple %s\n", apple[0]);
  printf("executable %s\n", fits ? path : "does not fit");
  printf("variable %s\n", getenv("GUEST") != nullptr ? getenv("GUEST") : "(none)");
  atexit(sayFirst);
  atexit(saySecond);
  exit(7);
}
