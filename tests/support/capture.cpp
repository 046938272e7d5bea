#include "tests/support/capture.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <iostream>

#include "tests/support/files.h"
#include "tests/support/temp_folder.h"

namespace test {

// Directs a descriptor into a file until the end of its life.
class Redirection {
 public:
  Redirection(int descriptor, const std::string& path)
      : descriptor_(descriptor), saved_(fcntl(descriptor, F_DUPFD_CLOEXEC, 3)) {
    const int file = open(path.c_str(), O_RDWR | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
    dup2(file, descriptor_);
    close(file);
  }
  ~Redirection() {
    dup2(saved_, descriptor_);
    close(saved_);
  }
  Redirection(const Redirection&) = delete;
  Redirection& operator=(const Redirection&) = delete;

 private:
  int descriptor_;
  int saved_;
};

static void flushAll() {
  std::cout.flush();
  std::cerr.flush();
  fflush(stdout);
  fflush(stderr);
}

static void runRedirected(const std::function<void()>& code, const std::string& out,
                          const std::string& err) {
  flushAll();
  const Redirection outRedirection(STDOUT_FILENO, out);
  const Redirection errRedirection(STDERR_FILENO, err);
  code();
  flushAll();
}

std::vector<std::string> Captured::lines() const {
  return logLinesOf(out);
}

Captured capture(const std::function<void()>& code) {
  const TempFolder folder;
  const bool failedBefore = testing::Test::HasFailure();
  runRedirected(code, folder / "out", folder / "err");
  const Captured captured{readFile(folder / "out"), readFile(folder / "err")};
  if (!failedBefore && testing::Test::HasFailure()) {
    std::cout << captured.out << captured.err;
  }
  return captured;
}

std::vector<std::string> logLinesOf(const std::function<void()>& code) {
  return capture(code).lines();
}

Result runInChild(const std::function<void()>& code, double seconds) {
  const TempFolder folder;
  const std::string out = folder / "out";
  const std::string err = folder / "err";
  flushAll();
  const pid_t child = fork();
  if (child == 0) {
    setpgid(0, 0);
    runRedirected(code, out, err);
    _exit(CODE_RETURNED);
  }
  EXPECT_GT(child, 0);
  Result result = waitForChild(child, seconds);
  result.out = readFile(out);
  result.err = readFile(err);
  return result;
}

}  // namespace test
