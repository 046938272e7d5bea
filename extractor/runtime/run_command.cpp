#include "extractor/runtime/run_command.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>  // IWYU pragma: keep, not every system repeats WIFEXITED elsewhere
#include <unistd.h>

#include <cstdio>
#include <cstring>

#include "support/owned.h"
#include "support/process/spawner.h"
#include "support/process/start_program.h"
#include "support/text/strings.h"

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

// Makes a pipe whose ends no other program inherits. Both are above the standard descriptors, so
// that redirecting one cannot overwrite the other.
static bool makePipe(Descriptor* from, Descriptor* to) {
  int ends[2];
  if (pipe(ends) != 0) {
    return false;
  }
  const Descriptor madeFrom(ends[0]);
  const Descriptor madeTo(ends[1]);
  from->reset(fcntl(ends[0], F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
  to->reset(fcntl(ends[1], F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
  return from->isOpen() && to->isOpen();
}

// Starts the shell with its standard output in the pipe. popen() would pass on ignored signals.
static int startShell(const char* command, const Descriptor& to, pid_t* child) {
  const char* const argv[] = {"sh", "-c", command, nullptr};
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, to.get(), STDOUT_FILENO);
  const int error = startProgram(child, "/bin/sh", const_cast<char* const*>(argv), &actions);
  posix_spawn_file_actions_destroy(&actions);
  return error;
}

char* runCommandGetOutput(const char* command) {
  Descriptor from;
  Descriptor to;
  pid_t child = 0;
  if (!makePipe(&from, &to) || startShell(command, to, &child) != 0) {
    return nullptr;
  }
  to.reset(-1);  // only the command still writes, so that its end is the pipe's
  char* output = static_cast<char*>(allocZeroed(kOutputSize));
  if (const Stream stream{fdopen(from.get(), "r")}) {
    from.release();
    collect(stream.get(), output);
  }
  waitForChild(child);
  return output;
}

std::string shellQuoted(const std::string& text) {
  std::string quoted = "'";
  for (const char c : text) {
    quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
  }
  return quoted + "'";
}

int runQuietly(const char* const* argv) {
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
  posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
  pid_t child = 0;
  const int error = startProgram(&child, argv[0], const_cast<char* const*>(argv), &actions);
  posix_spawn_file_actions_destroy(&actions);
  if (error != 0) {
    return -1;
  }
  int status = waitForChild(child);
  return status >= 0 && WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}
