#ifndef QUORVANE_TESTS_MACOS_RUN_DARWIN_SIGNALS_H
#define QUORVANE_TESTS_MACOS_RUN_DARWIN_SIGNALS_H

#include <csignal>
#include <cstdint>

namespace macrun {

// Darwin's signals, as <sys/signal.h> numbers them, and its set of them: bit number - 1.
using DarwinSignals = uint32_t;

constexpr int kDarwinSignalEnd = 32;

// Returns Linux's number, or 0 for a signal that Linux does not have or a number that is none.
int fromDarwinSignal(int number);

int toDarwinSignal(int number);
sigset_t fromDarwinSignals(DarwinSignals signals);
DarwinSignals toDarwinSignals(const sigset_t& signals);

}  // namespace macrun

#endif
