#include "platform/main_thread.h"

#include <pthread.h>

bool isMainThread() {
  return pthread_main_np() != 0;
}
