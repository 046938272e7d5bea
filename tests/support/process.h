#ifndef QUORVANE_TESTS_SUPPORT_PROCESS_H
#define QUORVANE_TESTS_SUPPORT_PROCESS_H

#include <sys/types.h>

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace test {

struct Command {
  std::vector<std::string> arguments{};              // arguments[0] is the program's path
  std::map<std::string, std::string> environment{};  // added to, or replacing, this process's own
  std::vector<std::string> unset{};                  // variables that the program must not see
  std::string folder{};                              // working folder; empty for this process's own
  double seconds = 60;                               // after that long it is killed
  // Runs in the new process before the program does: limits, another account, another root.
  std::function<void()> prepare{};
  // What has to come true before the rest of the process group is killed, where the program ended
  // with status 0: something that it has started is still to be done.
  std::function<bool()> until{};
};

struct Result {
  int status = -1;        // exit status, or -1 when it did not end by itself
  int signal = 0;         // the signal that ended it, or 0
  bool timedOut = false;  // whether it had to be killed
  std::string out;        // standard output
  std::string err;        // standard error
};

// Runs a program with empty standard input, waits for its end, and returns what it printed. What is
// still alive of its process group afterwards is killed.
Result run(const Command& command);

// Starts a program with empty standard input, as the leader of a process group of its own, with its
// output in the files `out` and `err`, which are emptied first. Returns its process id.
pid_t start(const Command& command, const std::string& out, const std::string& err);

// Waits for a child that leads a process group of its own, or is about to; after `seconds` it is
// killed. Where it ends with status 0, `until`, if there is one, gets as long to come true. Returns
// how it ended, without output. The rest of its group is killed.
Result waitForChild(pid_t child, double seconds, const std::function<bool()>& until = {});

}  // namespace test

#endif
