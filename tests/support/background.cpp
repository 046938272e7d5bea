#include "tests/support/background.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>

#include <chrono>
#include <thread>

#include "tests/support/files.h"

namespace test {

static const std::chrono::seconds kLongestWait(30);

Background::Background(const Command& command)
    : child_(start(command, folder_ / "out", folder_ / "err")) {}

Background::~Background() {
  kill(-child_, SIGKILL);
  kill(child_, SIGKILL);
  waitpid(child_, nullptr, 0);
}

std::string Background::out() const {
  return exists(folder_ / "out") ? readFile(folder_ / "out") : "";
}

std::string Background::err() const {
  return exists(folder_ / "err") ? readFile(folder_ / "err") : "";
}

std::string Background::waitForLine(const std::string& start) const {
  const auto end = std::chrono::steady_clock::now() + kLongestWait;
  while (std::chrono::steady_clock::now() < end) {
    const std::string text = out();
    const std::vector<std::string> lines = linesOf(text.substr(0, text.rfind('\n') + 1));
    for (const std::string& line : lines) {
      if (line.rfind(start, 0) == 0) {
        return line.substr(start.size());
      }
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  ADD_FAILURE() << "no line beginning with \"" << start << "\" came; standard error: " << err();
  return "";
}

OwnDisplay::OwnDisplay()
    : server_({{"/usr/bin/Xvfb", "-displayfd", "1", "-screen", "0", "1280x800x24", "-nolisten",
                "tcp", "-noreset"}}),
      name_(":" + server_.waitForLine("")) {}

}  // namespace test
