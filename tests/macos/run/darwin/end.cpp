#include "tests/macos/run/darwin/end.h"

#include <unistd.h>

#include <cstdlib>
#include <mutex>
#include <vector>

#include "platform/process_end.h"
#include "tests/macos/run/stop.h"
#include "tests/macos/run/supply/tables.h"

namespace macrun {

struct ExitHandler {
  void (*function)(void*);
  void* argument;
};

static std::mutex exitMutex;
static std::vector<ExitHandler> exitHandlers;

static int addHandler(void (*function)(void*), void* argument, void*) {
  const std::lock_guard<std::mutex> lock(exitMutex);
  exitHandlers.push_back({function, argument});
  return 0;
}

static void callPlain(void* function) {
  reinterpret_cast<void (*)()>(function)();
}

static int addPlainHandler(void (*function)()) {
  return addHandler(callPlain, reinterpret_cast<void*>(function), nullptr);
}

// Returns whether there was one.
static bool takeHandler(ExitHandler* handler) {
  const std::lock_guard<std::mutex> lock(exitMutex);
  if (exitHandlers.empty()) {
    return false;
  }
  *handler = exitHandlers.back();
  exitHandlers.pop_back();
  return true;
}

void exitExecutable(int status) {
  for (ExitHandler handler; takeHandler(&handler);) {
    handler.function(handler.argument);
  }
  endProcess(status);
}

[[noreturn]] static void bindAtCall() {
  giveUp("dyld_stub_binder was called: every import was bound at the start");
}

static constexpr Supplied kEnd[] = {
    function<addHandler>("___cxa_atexit"),
    function<_exit>("__exit"),
    function<abort>("_abort"),
    function<addPlainHandler>("_atexit"),
    function<exitExecutable>("_exit"),
    function<bindAtCall>("dyld_stub_binder"),
};
const SupplyTable kEndTable = tableOf(kEnd);

}  // namespace macrun
