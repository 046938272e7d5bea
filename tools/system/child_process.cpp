#include "tools/system/child_process.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <sstream>

#include "platform/environment.h"
#include "tools/system/input_error.h"
#include "tools/system/interruption.h"
#include "tools/system/temporary_folder.h"
#include "tools/system/whole_file.h"

namespace tools {

static const int kNotStarted = 127;

// Waits for the child and returns whether it ended with status 0.
static bool endsWell(pid_t child) {
  int status = 0;
  endWhenInterrupted(child);
  while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
  }
  endWhenInterrupted(0);
  stopWhenInterrupted();
  return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

std::vector<char*> vectorOf(const std::vector<std::string>& texts) {
  std::vector<char*> vector;
  for (const std::string& text : texts) {
    vector.push_back(const_cast<char*>(text.c_str()));
  }
  vector.push_back(nullptr);
  return vector;
}

void runProgram(const std::vector<std::string>& arguments) {
  const std::vector<char*> vector = vectorOf(arguments);
  pid_t child = 0;
  const int error = posix_spawn(&child, vector[0], nullptr, nullptr, vector.data(), getEnvP());
  if (error != 0) {
    throw InputError(arguments[0] + " cannot be started: " + strerror(error));
  }
  if (!endsWell(child)) {
    throw InputError(arguments[0] + " failed; its own message says why");
  }
}

static void redirect(int descriptor, const char* path, int flags) {
  const int file = open(path, flags, 0600);
  if (file < 0 || dup2(file, descriptor) < 0) {
    _exit(kNotStarted);
  }
}

static void becomeProgram [[noreturn]] (const std::vector<char*>& vector, const char* folder,
                                        const char* out, const char* err) {
  redirect(STDIN_FILENO, "/dev/null", O_RDONLY);
  redirect(STDOUT_FILENO, out, O_WRONLY | O_CREAT | O_TRUNC);
  redirect(STDERR_FILENO, err, O_WRONLY | O_CREAT | O_TRUNC);
  if (chdir(folder) == 0) {
    execve(vector[0], vector.data(), getEnvP());
  }
  _exit(kNotStarted);
}

// The first line of a Java program's failure is informative; the stack trace is not.
static std::string withoutStackTraces(const std::string& text) {
  std::istringstream lines(text);
  std::string rest;
  for (std::string line; std::getline(lines, line);) {
    if (line.compare(0, 4, "\tat ") != 0 && line.compare(0, 5, "\t... ") != 0) {
      rest += line + "\n";
    }
  }
  return rest;
}

std::string runForOutput(const std::vector<std::string>& arguments, const std::string& folder) {
  if (access(arguments[0].c_str(), X_OK) != 0) {
    throw InputError(arguments[0] + " cannot be started: " + strerror(errno));
  }
  const TemporaryFolder work;
  const std::string out = work / "out";
  const std::string err = work / "err";
  const std::vector<char*> vector = vectorOf(arguments);
  const pid_t child = fork();
  if (child == 0) {
    becomeProgram(vector, folder.c_str(), out.c_str(), err.c_str());
  }
  if (child < 0) {
    throw InputError(arguments[0] + " cannot be started: " + strerror(errno));
  }
  if (!endsWell(child)) {
    throw InputError(arguments[0] + " failed:\n" +
                     withoutStackTraces(readWhole(out) + readWhole(err)));
  }
  return readWhole(out);
}

}  // namespace tools
