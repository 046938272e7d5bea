#ifndef QUORVANE_PLATFORM_MAIN_THREAD_H
#define QUORVANE_PLATFORM_MAIN_THREAD_H

// Returns whether the calling thread is the one that entered main(). Any thread.
[[nodiscard]] bool isMainThread();

#endif
