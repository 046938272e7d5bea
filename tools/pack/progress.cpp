#include "tools/pack/progress.h"

#include <unistd.h>

#include <cstdio>

#include "tools/system/interruption.h"

namespace tools {

Progress::Progress(Verbosity verbosity, int steps)
    : verbosity_(verbosity), isOnTerminal_(isatty(STDERR_FILENO) == 1), steps_(steps) {}

Progress::~Progress() {
  clear();
}

void Progress::clear() {
  if (isShown_) {
    fprintf(stderr, "\r\033[K");
    isShown_ = false;
  }
}

void Progress::step(const std::string& what) {
  stopWhenInterrupted();
  ++step_;
  if (verbosity_ == Verbosity::verbose) {
    fprintf(stderr, "[%d/%d] %s\n", step_, steps_, what.c_str());
  } else if (verbosity_ == Verbosity::normal && isOnTerminal_) {
    fprintf(stderr, "\r\033[K[%d/%d] %s", step_, steps_, what.c_str());
    fflush(stderr);
    isShown_ = true;
  }
}

void Progress::detail(const std::string& what) const {
  if (verbosity_ == Verbosity::verbose) {
    fprintf(stderr, "      %s\n", what.c_str());
  }
}

void Progress::result(const std::string& line) {
  clear();
  if (verbosity_ != Verbosity::quiet) {
    printf("%s\n", line.c_str());
    fflush(stdout);
  }
}

}  // namespace tools
