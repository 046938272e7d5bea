#include "tools/system/interruption.h"

#include <atomic>
#include <csignal>
#include <initializer_list>

#include "tools/system/input_error.h"

namespace tools {

static std::atomic<int> notedSignal{0};
static std::atomic<pid_t> runningChild{0};
static_assert(std::atomic<pid_t>::is_always_lock_free, "a signal handler may use them");
static std::atomic<bool> areThreadsInterrupted{false};

static void note(int signal) {
  notedSignal = signal;
  const pid_t child = runningChild;
  if (child > 0) {
    kill(child, SIGTERM);
  }
}

void noteInterruptions() {
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    struct sigaction old {};
    sigaction(signal, nullptr, &old);
    if (old.sa_handler == SIG_IGN) {
      continue;
    }
    struct sigaction action {};
    action.sa_handler = note;
    action.sa_flags = SA_RESTART;
    sigemptyset(&action.sa_mask);
    sigaction(signal, &action, nullptr);
  }
}

void endWhenInterrupted(pid_t child) {
  runningChild = child;
  if (child > 0 && notedSignal != 0) {
    kill(child, SIGTERM);
  }
}

int notedInterruption() {
  return notedSignal;
}

void interruptThreads(bool isWanted) {
  areThreadsInterrupted = isWanted;
}

void stopWhenInterrupted() {
  if (notedSignal != 0 || areThreadsInterrupted) {
    throw InputError("interrupted; nothing was put in place");
  }
}

}  // namespace tools
