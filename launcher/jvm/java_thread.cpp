#include "launcher/jvm/java_thread.h"

#include <unistd.h>

static size_t roundedToPages(size_t size) {
  const size_t page = static_cast<size_t>(sysconf(_SC_PAGESIZE));
  return (size + page - 1) / page * page;
}

static bool startWithStack(pthread_t* thread, size_t stackSize, void* (*body)(void*),
                           void* argument) {
  pthread_attr_t attributes;
  if (pthread_attr_init(&attributes) != 0) {
    return false;
  }
  const bool started = pthread_attr_setstacksize(&attributes, roundedToPages(stackSize)) == 0 &&
                       pthread_create(thread, &attributes, body, argument) == 0;
  pthread_attr_destroy(&attributes);
  return started;
}

bool startJavaThread(pthread_t* thread, size_t stackSize, void* (*body)(void*), void* argument) {
  return startWithStack(thread, stackSize, body, argument) ||
         pthread_create(thread, nullptr, body, argument) == 0;
}
