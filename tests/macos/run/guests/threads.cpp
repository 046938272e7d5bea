// Threads: their stacks, locks with static initialisers, conditions, things done once, own values.
#include <pthread.h>

#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>

static pthread_mutex_t mutex = PTHREAD_MUTEX_INITIALIZER;
static pthread_mutex_t recursive = PTHREAD_RECURSIVE_MUTEX_INITIALIZER;
static pthread_cond_t condition = PTHREAD_COND_INITIALIZER;
static pthread_once_t once = PTHREAD_ONCE_INIT;
static pthread_key_t key;
static int number = 0;
static int timesOnce = 0;

static void doOnce() {
  ++timesOnce;
}

static void* count(void* name) {
  pthread_setspecific(key, name);
  for (int i = 0; i < 1000; ++i) {
    pthread_once(&once, doOnce);
    pthread_mutex_lock(&mutex);
    ++number;
    pthread_cond_broadcast(&condition);
    pthread_mutex_unlock(&mutex);
  }
  printf("own value %d main %d\n", pthread_getspecific(key) == name, pthread_main_np());
  return name;
}

static void countInThreads() {
  pthread_key_create(&key, nullptr);
  pthread_t threads[2];
  for (int i = 0; i < 2; ++i) {
    pthread_create(&threads[i], nullptr, count, &threads[i]);
  }
  pthread_mutex_lock(&mutex);
  while (number < 2000) {
    pthread_cond_wait(&condition, &mutex);
  }
  pthread_mutex_unlock(&mutex);
  for (pthread_t thread : threads) {
    pthread_join(thread, nullptr);
  }
  printf("number %d once %d main %d\n", number, timesOnce, pthread_main_np());
  printf("recursive %d %d\n", pthread_mutex_lock(&recursive), pthread_mutex_lock(&recursive));
  printf("busy %d\n", (pthread_mutex_lock(&mutex), pthread_mutex_trylock(&mutex)));
}

// Uses so many kilobytes of stack, a page at a time. An optimiser would keep less of each page.
[[gnu::noinline, clang::optnone]] static int use(int kilobytes) {
  volatile char page[4096];
  memset(const_cast<char*>(page), 1, sizeof page);
  return kilobytes <= 4 ? page[0] : use(kilobytes - 4) + page[4095];
}

static void* useStack(void* kilobytes) {
  printf("used %d\n", use(*static_cast<int*>(kilobytes)) > 0);
  fflush(stdout);
  return nullptr;
}

static void useStackOf(int kilobytes, size_t size) {
  pthread_attr_t attributes;
  pthread_attr_init(&attributes);
  size_t usual = 0;
  pthread_attr_getstacksize(&attributes, &usual);
  printf("usual %zu odd %d\n", usual, pthread_attr_setstacksize(&attributes, 10000));
  if (size != 0) {
    printf("set %d\n", pthread_attr_setstacksize(&attributes, size));
  }
  pthread_t thread;
  pthread_create(&thread, size != 0 ? &attributes : nullptr, useStack, &kilobytes);
  pthread_join(thread, nullptr);
}

int main(int argc, char** argv) {
  if (argc < 2) {
    countInThreads();
  } else {
    useStackOf(atoi(argv[1]), argc > 2 ? strtoul(argv[2], nullptr, 10) : 0);
  }
}
