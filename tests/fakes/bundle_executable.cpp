// The executable of a loadable bundle: prints "bundle executable loaded" when a process loads it.

#include <cstdio>

__attribute__((constructor)) static void announce() {
  puts("bundle executable loaded");
}
