#include "tools/system/progress.h"

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
  if (verbosity_ == Verbosity::quiet) {
    return;
  }
  const std::string total = steps_ == 0 ? "" : "/" + std::to_string(steps_);
  const std::string line = "[" + std::to_string(step_) + total + "] " + what;
  if (verbosity_ == Verbosity::normal && isOnTerminal_) {
    fprintf(stderr, "\r\033[K%s", line.c_str());
    fflush(stderr);
    isShown_ = true;
  } else {
    fprintf(stderr, "%s\n", line.c_str());
  }
}

void Progress::finish() {
  using std::chrono::duration_cast;
  using std::chrono::seconds;
  clear();
  const auto took = duration_cast<seconds>(std::chrono::steady_clock::now() - start_).count();
  if (verbosity_ != Verbosity::quiet && took > 0) {
    fprintf(stderr, "done in %lld s\n", static_cast<long long>(took));
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
