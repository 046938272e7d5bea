#include <atomic>

#include "tests/macos/run/darwin/errors.h"
#include "tests/macos/run/darwin/signals.h"
#include "tests/macos/run/stop.h"
#include "tests/macos/run/supply/tables.h"

namespace macrun {

using Handler = void (*)(int);

// The executable's own handlers, by Darwin's numbers.
static std::atomic<Handler> handlers[kDarwinSignalEnd];

static void handle(int number) {
  const int darwin = toDarwinSignal(number);
  if (const Handler handler = handlers[darwin]) {
    handler(darwin);
  }
}

static bool isDefaultOrIgnored(Handler handler) {
  return handler == SIG_DFL || handler == SIG_IGN;
}

// struct sigaction of <sys/signal.h>.
struct DarwinAction {
  Handler handler;
  DarwinSignals blocked;
  int flags;
};
static_assert(sizeof(DarwinAction) == 16);

struct ActionFlag {
  int darwin, linux;
};

// SA_… of <sys/signal.h>. SA_SIGINFO (0x40) would need its record translated.
static constexpr ActionFlag kActionFlags[] = {
    {0x1, SA_ONSTACK},   {0x2, SA_RESTART},  {0x4, static_cast<int>(SA_RESETHAND)},
    {0x8, SA_NOCLDSTOP}, {0x10, SA_NODEFER}, {0x20, SA_NOCLDWAIT},
};

static struct sigaction fromDarwinAction(const DarwinAction& darwin) {
  struct sigaction action {};
  action.sa_handler = isDefaultOrIgnored(darwin.handler) ? darwin.handler : handle;
  action.sa_mask = fromDarwinSignals(darwin.blocked);
  int rest = darwin.flags;
  for (const ActionFlag& flag : kActionFlags) {
    action.sa_flags |= (rest & flag.darwin) != 0 ? flag.linux : 0;
    rest &= ~flag.darwin;
  }
  if (rest != 0) {
    giveUp("sigaction: flags %#x are not supported", static_cast<unsigned>(rest));
  }
  return action;
}

static DarwinAction toDarwinAction(const struct sigaction& action, Handler own) {
  DarwinAction darwin{action.sa_handler == handle ? own : action.sa_handler,
                      toDarwinSignals(action.sa_mask), 0};
  for (const ActionFlag& flag : kActionFlags) {
    darwin.flags |= (action.sa_flags & flag.linux) != 0 ? flag.darwin : 0;
  }
  return darwin;
}

static int setAction(int number, const DarwinAction* wanted, DarwinAction* before) {
  const int linux = fromDarwinSignal(number);
  if (linux == 0) {
    return failWith(darwin::kEINVAL);
  }
  const Handler own = handlers[number];
  struct sigaction action {
  }, old{};
  if (wanted != nullptr) {
    action = fromDarwinAction(*wanted);
    handlers[number] = wanted->handler;
  }
  const int result =
      translating([&] { return sigaction(linux, wanted != nullptr ? &action : nullptr, &old); });
  if (result == 0 && before != nullptr) {
    *before = toDarwinAction(old, own);
  }
  return result;
}

static Handler setHandler(int number, Handler handler) {
  constexpr int kRestart = 0x2;
  const DarwinAction wanted{handler, 0, kRestart};
  DarwinAction before{};
  return setAction(number, &wanted, &before) == 0 ? before.handler : SIG_ERR;
}

static constexpr Supplied kActions[] = {
    function<setAction>("_sigaction"),
    function<setHandler>("_signal"),
};
const SupplyTable kSignalActionTable = tableOf(kActions);

}  // namespace macrun
