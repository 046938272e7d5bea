#include "extractor/run_command.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>

#include "platform/environment.h"
#include "support/spawner.h"
#include "support/strings.h"

static const size_t kOutputSize = 10000;

static void collect(FILE* pipe, char* output) {
  size_t length = 0;
  bool isFull = false;
  char piece[7];
  while (fgets(piece, sizeof piece, pipe) != nullptr) {
    const size_t more = strlen(piece);
    isFull = isFull || more >= kOutputSize - length;
    if (!isFull) {
      memcpy(output + length, piece, more + 1);
      length += more;
    }
  }
  while (length > 0 && strchr(" \r\n", output[length - 1]) != nullptr) {
    output[--length] = 0;
  }
}

char* runCommandGetOutput(const char* command) {
  FILE* pipe = popen(command, "r");
  if (pipe == nullptr) {
    return nullptr;
  }
  char* output = static_cast<char*>(allocZeroed(kOutputSize));
  collect(pipe, output);
  pclose(pipe);
  return output;
}

std::string shellQuoted(const std::string& text) {
  std::string quoted = "'";
  for (const char c : text) {
    quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
  }
  return quoted + "'";
}

int runQuietly(const char* const* words) {
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
  posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
  pid_t child = 0;
  const int error =
      posix_spawn(&child, words[0], &actions, nullptr, const_cast<char* const*>(words), getEnvP());
  posix_spawn_file_actions_destroy(&actions);
  if (error != 0) {
    return -1;
  }
  int status = waitForChild(child);
  return status >= 0 && WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}
