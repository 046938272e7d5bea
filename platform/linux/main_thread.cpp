#include "platform/main_thread.h"

#include <sys/syscall.h>
#include <unistd.h>

bool isMainThread() {
  return syscall(SYS_gettid) == getpid();
}
