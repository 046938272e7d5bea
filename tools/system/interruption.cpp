#include "tools/system/interruption.h"

#include <csignal>
#include <initializer_list>

#include "tools/system/input_error.h"

namespace tools {

static volatile sig_atomic_t notedSignal = 0;
static volatile pid_t runningChild = 0;

static void note(int signal) {
  notedSignal = signal;
  if (runningChild > 0) {
    kill(runningChild, SIGTERM);
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

void stopWhenInterrupted() {
  if (notedSignal != 0) {
    throw InputError("interrupted; nothing was put in place");
  }
}

}  // namespace tools
