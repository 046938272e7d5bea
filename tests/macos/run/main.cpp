// Runs an x86-64 executable for macOS in a Linux process. README.md beside this file says how.

#include <sys/prctl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "tests/macos/run/children/child.h"
#include "tests/macos/run/cocoa/toolkit.h"
#include "tests/macos/run/darwin/end.h"
#include "tests/macos/run/run.h"
#include "tests/macos/run/supply/imports.h"
#include "tests/macos/run/supply/trace.h"

static const char kUsage[] =
    "usage: macrun EXECUTABLE ARGUMENTS...\n"
    "       macrun --imports EXECUTABLE\n"
    "Runs an x86-64 executable for macOS, or lists what it imports. With MACRUN_TRACE=FILE in the\n"
    "environment, FILE gets a line for each import and each selector that is used, and the list "
    "says\n"
    "which functions are in it.\n";

// What the process was asked to do.
struct Order {
  std::string executable;
  int argc;
  char** argv;  // the executable's own, argv[0] included
  bool listImports;
};

// GNUstep and others look here for the program's place.
extern "C" ssize_t readlink(const char* path, char* target, size_t size) {
  const char* executable = macrun::executablePath();
  if (executable[0] != 0 && strcmp(path, "/proc/self/exe") == 0) {
    const size_t length = std::min(strlen(executable), size);
    memcpy(target, executable, length);
    return static_cast<ssize_t>(length);
  }
  return syscall(SYS_readlink, path, target, size);
}

static Order readOrder(int argc, char** argv) {
  if (const char* executable = getenv(macrun::kExecutableVariable)) {
    Order order{executable, argc, argv, false};
    unsetenv(macrun::kExecutableVariable);
    return order;
  }
  const bool listImports = argc == 3 && strcmp(argv[1], "--imports") == 0;
  const int first = listImports ? 2 : 1;
  if (argc <= first || (argv[first][0] == '-' && !listImports)) {
    fputs(kUsage, stderr);
    exit(2);
  }
  return {argv[first], argc - first, argv + first, listImports};
}

// Children find the library that runs them through this runner, even where nobody preloaded it.
static void preloadForChildren() {
  char own[PATH_MAX];
  const ssize_t length = syscall(SYS_readlink, "/proc/self/exe", own, sizeof own);
  const std::string runner(own, static_cast<size_t>(std::max<ssize_t>(length, 0)));
  const std::string library = runner.substr(0, runner.rfind('/')) + "/libmacexec.so";
  const char* before = getenv("LD_PRELOAD");
  if (before == nullptr || before[0] == 0) {
    setenv("LD_PRELOAD", library.c_str(), 1);
  } else if (strstr(before, library.c_str()) == nullptr) {
    setenv("LD_PRELOAD", (before + (":" + library)).c_str(), 1);
  }
}

static std::string absolutePath(const std::string& path) {
  char* resolved = realpath(path.c_str(), nullptr);
  const std::string absolute = resolved != nullptr ? resolved : path;
  free(resolved);
  return absolute;
}

static int runExecutable(const Order& order) {
  const std::string place = "executable_path=" + order.executable;
  const char* apple[] = {place.c_str(), nullptr};
  macrun::traceUse("run", macrun::executablePath());
  macrun::traceDataImports();
  macrun::runInitializers(macrun::loadedImage(), order.argc, order.argv, environ, apple);
  return macrun::runMain(macrun::loadedImage(), order.argc, order.argv, environ, apple);
}

int main(int argc, char** argv) {
  const Order order = readOrder(argc, argv);
  preloadForChildren();
  macrun::setExecutablePath(absolutePath(order.executable));
  prctl(PR_SET_NAME, order.executable.substr(order.executable.rfind('/') + 1).c_str());
  macrun::prepareCocoa(order.argv);
  macrun::loadExecutable(order.executable.c_str());
  if (order.listImports) {
    macrun::printImports();
    exit(0);
  }
  macrun::makeReady();
  macrun::exitExecutable(runExecutable(order));
}
