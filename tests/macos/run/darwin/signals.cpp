#include "tests/macos/run/darwin/signals.h"

#include <pthread.h>
#include <unistd.h>

#include "tests/macos/run/darwin/errors.h"
#include "tests/macos/run/supply/tables.h"

namespace macrun {

// The index is Darwin's number. SIGEMT (7) and SIGINFO (29) are not there.
static constexpr int kSignals[kDarwinSignalEnd] = {
    0,       SIGHUP,  SIGINT,    SIGQUIT, SIGILL,   SIGTRAP, SIGABRT, 0,
    SIGFPE,  SIGKILL, SIGBUS,    SIGSEGV, SIGSYS,   SIGPIPE, SIGALRM, SIGTERM,
    SIGURG,  SIGSTOP, SIGTSTP,   SIGCONT, SIGCHLD,  SIGTTIN, SIGTTOU, SIGIO,
    SIGXCPU, SIGXFSZ, SIGVTALRM, SIGPROF, SIGWINCH, 0,       SIGUSR1, SIGUSR2,
};

int fromDarwinSignal(int number) {
  return number > 0 && number < kDarwinSignalEnd ? kSignals[number] : 0;
}

int toDarwinSignal(int number) {
  for (int i = 1; i < kDarwinSignalEnd; ++i) {
    if (kSignals[i] == number) {
      return i;
    }
  }
  return number;
}

sigset_t fromDarwinSignals(DarwinSignals signals) {
  sigset_t linux;
  sigemptyset(&linux);
  for (int i = 1; i < kDarwinSignalEnd; ++i) {
    if ((signals >> (i - 1) & 1) != 0 && kSignals[i] != 0) {
      sigaddset(&linux, kSignals[i]);
    }
  }
  return linux;
}

DarwinSignals toDarwinSignals(const sigset_t& signals) {
  DarwinSignals darwin = 0;
  for (int i = 1; i < kDarwinSignalEnd; ++i) {
    if (kSignals[i] != 0 && sigismember(&signals, kSignals[i]) == 1) {
      darwin |= DarwinSignals{1} << (i - 1);
    }
  }
  return darwin;
}

// SIG_BLOCK, SIG_UNBLOCK and SIG_SETMASK are 1, 2 and 3; Linux counts from 0.
static int changeMask(int how, const DarwinSignals* wanted, DarwinSignals* before) {
  sigset_t linux, old;
  if (wanted != nullptr) {
    linux = fromDarwinSignals(*wanted);
  }
  const int error = pthread_sigmask(how - 1, wanted != nullptr ? &linux : nullptr, &old);
  if (error == 0 && before != nullptr) {
    *before = toDarwinSignals(old);
  }
  return toDarwinError(error);
}

static int changeProcessMask(int how, const DarwinSignals* wanted, DarwinSignals* before) {
  const int error = changeMask(how, wanted, before);
  return error == 0 ? 0 : failWith(error);
}

static int sendSignal(pid_t process, int number) {
  const int linux = fromDarwinSignal(number);
  if (number != 0 && linux == 0) {
    return failWith(darwin::kEINVAL);
  }
  return translating([&] { return kill(process, linux); });
}

static int raiseSignal(int number) {
  return translating([&] { return raise(fromDarwinSignal(number)); });
}

static int emptySignals(DarwinSignals* signals) {
  *signals = 0;
  return 0;
}

static int fillSignals(DarwinSignals* signals) {
  *signals = ~DarwinSignals{0};
  return 0;
}

static int addSignal(DarwinSignals* signals, int number) {
  *signals |= DarwinSignals{1} << (number - 1);
  return 0;
}

static int removeSignal(DarwinSignals* signals, int number) {
  *signals &= ~(DarwinSignals{1} << (number - 1));
  return 0;
}

static int hasSignal(const DarwinSignals* signals, int number) {
  return static_cast<int>(*signals >> (number - 1) & 1);
}

static constexpr Supplied kSignalSymbols[] = {
    function<sendSignal>("_kill"),
    translated<pause>("_pause"),
    function<changeMask>("_pthread_sigmask"),
    function<raiseSignal>("_raise"),
    function<addSignal>("_sigaddset"),
    function<removeSignal>("_sigdelset"),
    function<emptySignals>("_sigemptyset"),
    function<fillSignals>("_sigfillset"),
    function<hasSignal>("_sigismember"),
    function<changeProcessMask>("_sigprocmask"),
};
const SupplyTable kSignalTable = tableOf(kSignalSymbols);

}  // namespace macrun
