#include <pthread.h>

#include <atomic>
#include <cstddef>

#include "tests/macos/run/darwin/errors.h"
#include "tests/macos/run/stop.h"
#include "tests/macos/run/supply/tables.h"

namespace macrun {

// What mutexes and conditions start with (<sys/_pthread/_pthread_types.h>). The runner keeps a
// pointer to Linux's object behind the signature, and makes that object when it is first used.
struct DarwinLock {
  long signature;
  std::atomic<void*> linux;
};
static_assert(sizeof(std::atomic<void*>) == 8 && offsetof(DarwinLock, linux) == 8);

// The signatures of static initialisers, _PTHREAD_…_SIG_init of <pthread/pthread_impl.h>.
constexpr long kMutex = 0x32AAABA7, kErrorCheckMutex = 0x32AAABA1, kRecursiveMutex = 0x32AAABA2,
               kFirstFitMutex = 0x32AAABA3, kCondition = 0x3CB0B1BB, kOnce = 0x30B1BCBA;

static pthread_mutex_t* newMutex(long signature) {
  pthread_mutexattr_t attributes;
  pthread_mutexattr_init(&attributes);
  if (signature == kRecursiveMutex) {
    pthread_mutexattr_settype(&attributes, PTHREAD_MUTEX_RECURSIVE);
  } else if (signature == kErrorCheckMutex) {
    pthread_mutexattr_settype(&attributes, PTHREAD_MUTEX_ERRORCHECK);
  } else if (signature != kMutex && signature != kFirstFitMutex) {
    giveUp("a mutex has the signature %#lx", static_cast<unsigned long>(signature));
  }
  auto* mutex = new pthread_mutex_t;
  pthread_mutex_init(mutex, &attributes);
  pthread_mutexattr_destroy(&attributes);
  return mutex;
}

static pthread_cond_t* newCondition(long signature) {
  if (signature != kCondition) {
    giveUp("a condition has the signature %#lx", static_cast<unsigned long>(signature));
  }
  auto* condition = new pthread_cond_t;
  pthread_cond_init(condition, nullptr);
  return condition;
}

// Two threads may come at once: the second one's object is thrown away.
template <class Object>
static Object* objectBehind(DarwinLock* lock, Object* (*make)(long)) {
  void* existing = lock->linux;
  if (existing == nullptr) {
    Object* made = make(lock->signature);
    if (lock->linux.compare_exchange_strong(existing, made)) {
      return made;
    }
    delete made;
  }
  return static_cast<Object*>(existing);
}

static pthread_mutex_t* mutexBehind(DarwinLock* lock) {
  return objectBehind(lock, newMutex);
}

static pthread_cond_t* conditionBehind(DarwinLock* lock) {
  return objectBehind(lock, newCondition);
}

// pthread_mutexattr_t: here the signature that the mutex gets.
struct DarwinMutexAttributes {
  long mutexSignature;
  long rest;
};

static int makeMutexAttributes(DarwinMutexAttributes* attributes) {
  attributes->mutexSignature = kMutex;
  return 0;
}

// PTHREAD_MUTEX_NORMAL, …_ERRORCHECK and …_RECURSIVE of <pthread.h> are 0, 1 and 2.
static int setMutexKind(DarwinMutexAttributes* attributes, int kind) {
  static constexpr long kKinds[] = {kMutex, kErrorCheckMutex, kRecursiveMutex};
  if (kind < 0 || kind > 2) {
    return darwin::kEINVAL;
  }
  attributes->mutexSignature = kKinds[kind];
  return 0;
}

static int dropMutexAttributes(DarwinMutexAttributes*) {
  return 0;
}

static int makeMutex(DarwinLock* lock, const DarwinMutexAttributes* attributes) {
  lock->signature = attributes != nullptr ? attributes->mutexSignature : kMutex;
  lock->linux = nullptr;
  return 0;
}

static int makeCondition(DarwinLock* lock, const void*) {
  lock->signature = kCondition;
  lock->linux = nullptr;
  return 0;
}

static int dropMutex(DarwinLock* lock) {
  pthread_mutex_t* mutex = mutexBehind(lock);
  const int error = pthread_mutex_destroy(mutex);
  if (error == 0) {
    delete mutex;
    lock->signature = 0;
  }
  return toDarwinError(error);
}

static int dropCondition(DarwinLock* lock) {
  pthread_cond_t* condition = conditionBehind(lock);
  const int error = pthread_cond_destroy(condition);
  if (error == 0) {
    delete condition;
    lock->signature = 0;
  }
  return toDarwinError(error);
}

static int lockMutex(DarwinLock* lock) {
  return toDarwinError(pthread_mutex_lock(mutexBehind(lock)));
}

static int tryMutex(DarwinLock* lock) {
  return toDarwinError(pthread_mutex_trylock(mutexBehind(lock)));
}

static int unlockMutex(DarwinLock* lock) {
  return toDarwinError(pthread_mutex_unlock(mutexBehind(lock)));
}

static int waitForCondition(DarwinLock* condition, DarwinLock* mutex) {
  return toDarwinError(pthread_cond_wait(conditionBehind(condition), mutexBehind(mutex)));
}

static int waitUntil(DarwinLock* condition, DarwinLock* mutex, const timespec* time) {
  return toDarwinError(
      pthread_cond_timedwait(conditionBehind(condition), mutexBehind(mutex), time));
}

static int wakeOne(DarwinLock* condition) {
  return toDarwinError(pthread_cond_signal(conditionBehind(condition)));
}

static int wakeAll(DarwinLock* condition) {
  return toDarwinError(pthread_cond_broadcast(conditionBehind(condition)));
}

// pthread_once_t: Linux's number lies where Darwin has eight bytes of its own, which are 0 at
// first.
struct DarwinOnce {
  long signature;
  pthread_once_t linux;
};

static int runOnce(DarwinOnce* once, void (*function)()) {
  if (once->signature != kOnce) {
    giveUp("a pthread_once_t has the signature %#lx", static_cast<unsigned long>(once->signature));
  }
  return toDarwinError(pthread_once(&once->linux, function));
}

static constexpr Supplied kLocks[] = {
    function<wakeAll>("_pthread_cond_broadcast"),
    function<dropCondition>("_pthread_cond_destroy"),
    function<makeCondition>("_pthread_cond_init"),
    function<wakeOne>("_pthread_cond_signal"),
    function<waitUntil>("_pthread_cond_timedwait"),
    function<waitForCondition>("_pthread_cond_wait"),
    function<dropMutex>("_pthread_mutex_destroy"),
    function<makeMutex>("_pthread_mutex_init"),
    function<lockMutex>("_pthread_mutex_lock"),
    function<tryMutex>("_pthread_mutex_trylock"),
    function<unlockMutex>("_pthread_mutex_unlock"),
    function<dropMutexAttributes>("_pthread_mutexattr_destroy"),
    function<makeMutexAttributes>("_pthread_mutexattr_init"),
    function<setMutexKind>("_pthread_mutexattr_settype"),
    function<runOnce>("_pthread_once"),
};
const SupplyTable kLockTable = tableOf(kLocks);

}  // namespace macrun
