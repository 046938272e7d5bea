#include "tools/child_process.h"

#include <spawn.h>
#include <sys/wait.h>

#include <cerrno>
#include <cstring>

#include "platform/environment.h"
#include "tools/input_error.h"

namespace tools {

void runProgram(const std::vector<std::string>& arguments) {
  std::vector<char*> vector;
  for (const std::string& argument : arguments) {
    vector.push_back(const_cast<char*>(argument.c_str()));
  }
  vector.push_back(nullptr);
  pid_t child = 0;
  const int error = posix_spawn(&child, vector[0], nullptr, nullptr, vector.data(), getEnvP());
  if (error != 0) {
    throw InputError(arguments[0] + " cannot be started: " + strerror(error));
  }
  int status = 0;
  while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
  }
  if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) {
    throw InputError(arguments[0] + " failed; its own message says why");
  }
}

}  // namespace tools
