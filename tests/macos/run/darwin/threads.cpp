#include "tests/macos/run/darwin/threads.h"

#include <pthread.h>
#include <sched.h>
#include <unistd.h>

#include <cstdint>

#include "tests/macos/run/darwin/errors.h"
#include "tests/macos/run/darwin/signals.h"
#include "tests/macos/run/supply/tables.h"

namespace macrun {

// A thread is a pointer there, which the executable hands back and never looks into.
static_assert(sizeof(pthread_t) == sizeof(void*));

static int createThread(pthread_t* thread, const DarwinThreadAttributes* wanted,
                        void* (*function)(void*), void* argument) {
  pthread_attr_t attributes;
  pthread_attr_init(&attributes);
  pthread_attr_setstacksize(&attributes, wanted != nullptr ? wanted->stackSize : kDarwinStackSize);
  if (wanted != nullptr && wanted->detachState == kDarwinDetached) {
    pthread_attr_setdetachstate(&attributes, PTHREAD_CREATE_DETACHED);
  }
  const int error = pthread_create(thread, &attributes, function, argument);
  pthread_attr_destroy(&attributes);
  return toDarwinError(error);
}

static int joinThread(pthread_t thread, void** result) {
  return toDarwinError(pthread_join(thread, result));
}

static int detachThread(pthread_t thread) {
  return toDarwinError(pthread_detach(thread));
}

static int isMainThreadNow() {
  return gettid() == getpid();
}

// mach_port_t: a number for the thread. Only the calling thread's own is known here.
static uint32_t threadNumber(pthread_t) {
  return static_cast<uint32_t>(gettid());
}

static int nameThread(const char* name) {
  char shortened[16] = {};
  strncpy(shortened, name, sizeof shortened - 1);
  return toDarwinError(pthread_setname_np(pthread_self(), shortened));
}

static int signalThread(pthread_t thread, int number) {
  return toDarwinError(pthread_kill(thread, fromDarwinSignal(number)));
}

// pthread_key_t is an unsigned long there.
static int makeKey(unsigned long* key, void (*end)(void*)) {
  pthread_key_t linux = 0;
  const int error = pthread_key_create(&linux, end);
  *key = linux;
  return toDarwinError(error);
}

static int dropKey(unsigned long key) {
  return toDarwinError(pthread_key_delete(static_cast<pthread_key_t>(key)));
}

static void* valueOf(unsigned long key) {
  return pthread_getspecific(static_cast<pthread_key_t>(key));
}

static int setValue(unsigned long key, const void* value) {
  return toDarwinError(pthread_setspecific(static_cast<pthread_key_t>(key), value));
}

static constexpr Supplied kThreads[] = {
    function<createThread>("_pthread_create"),
    function<detachThread>("_pthread_detach"),
    function<pthread_equal>("_pthread_equal"),
    function<pthread_exit>("_pthread_exit"),
    function<valueOf>("_pthread_getspecific"),
    function<joinThread>("_pthread_join"),
    function<makeKey>("_pthread_key_create"),
    function<dropKey>("_pthread_key_delete"),
    function<signalThread>("_pthread_kill"),
    function<threadNumber>("_pthread_mach_thread_np"),
    function<isMainThreadNow>("_pthread_main_np"),
    function<pthread_self>("_pthread_self"),
    function<nameThread>("_pthread_setname_np"),
    function<setValue>("_pthread_setspecific"),
    function<sched_yield>("_sched_yield"),
};
const SupplyTable kThreadTable = tableOf(kThreads);

}  // namespace macrun
