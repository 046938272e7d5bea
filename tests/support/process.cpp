#include "tests/support/process.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <thread>

#include "tests/support/end_with_parent.h"
#include "tests/support/files.h"
#include "tests/support/run_record.h"
#include "tests/support/temp_folder.h"

namespace test {

static void becomeProgram
    [[noreturn]] (const Command& command, const std::string& out, const std::string& err) {
  setpgid(0, 0);
  const int flags = O_WRONLY | O_CREAT | O_TRUNC;
  dup2(open("/dev/null", O_RDONLY), STDIN_FILENO);
  dup2(open(out.c_str(), flags, 0600), STDOUT_FILENO);
  dup2(open(err.c_str(), flags, 0600), STDERR_FILENO);
  if (command.prepare) {
    command.prepare();
  }
  // Nothing outlives a test that is itself killed; a change of account would have undone this.
  endWithParent();
  if (!command.folder.empty() && chdir(command.folder.c_str()) != 0) {
    _exit(126);
  }
  // Where the desktop started what runs the tests, it did not start what they run.
  unsetenv("DESKTOP_STARTUP_ID");
  for (const auto& [name, value] : command.environment) {
    setenv(name.c_str(), value.c_str(), 1);
  }
  for (const std::string& name : command.unset) {
    unsetenv(name.c_str());
  }
  std::vector<char*> arguments;
  for (const std::string& argument : command.arguments) {
    arguments.push_back(const_cast<char*>(argument.c_str()));
  }
  arguments.push_back(nullptr);
  execv(arguments[0], arguments.data());
  _exit(127);
}

// Waits for `child` until the time is over; returns whether it had to be killed.
static bool waitOrKill(pid_t child, double seconds, int* status) {
  const auto end = std::chrono::steady_clock::now() + std::chrono::duration<double>(seconds);
  while (waitpid(child, status, WNOHANG) == 0) {
    if (std::chrono::steady_clock::now() > end) {
      kill(-child, SIGKILL);
      waitpid(child, status, 0);
      return true;
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  return false;
}

static void waitUntil(const std::function<bool()>& done, double seconds) {
  const auto end = std::chrono::steady_clock::now() + std::chrono::duration<double>(seconds);
  while (!done() && std::chrono::steady_clock::now() < end) {
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
}

Result waitForChild(pid_t child, double seconds, const std::function<bool()>& until) {
  setpgid(child, child);
  int status = 0;
  Result result;
  result.timedOut = waitOrKill(child, seconds, &status);
  result.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  result.signal = WIFSIGNALED(status) ? WTERMSIG(status) : 0;
  if (until && result.status == 0) {
    waitUntil(until, seconds);
  }
  kill(-child, SIGKILL);
  return result;
}

pid_t start(const Command& command, const std::string& out, const std::string& err) {
  const pid_t child = fork();
  if (child == 0) {
    becomeProgram(command, out, err);
  }
  EXPECT_GT(child, 0);
  setpgid(child, child);  // so that it can be killed before it has run at all
  return child;
}

Result run(const Command& command) {
  const TempFolder folder;
  const std::string out = folder / "out";
  const std::string err = folder / "err";
  const pid_t child = start(command, out, err);
  Result result = waitForChild(child, command.seconds, command.until);
  result.out = readFile(out);
  result.err = readFile(err);
  recordRun(result);
  return result;
}

}  // namespace test
