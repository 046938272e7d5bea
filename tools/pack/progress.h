#ifndef QUORVANE_TOOLS_PACK_PROGRESS_H
#define QUORVANE_TOOLS_PACK_PROGRESS_H

#include <string>

namespace tools {

enum class Verbosity { quiet, normal, verbose };

// What a command says while it works: one line on standard error that is written over and over when
// that is a terminal, a line for each step when more was asked for, else nothing.
class Progress {
 public:
  Progress(Verbosity verbosity, int steps);
  // Takes the line away.
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  // Begins the next step. Throws InputError when the command was interrupted.
  void step(const std::string& what);

  // Says more about the step, when that was asked for.
  void detail(const std::string& what) const;

  // Prints a line of the result on standard output, unless silence was asked for.
  void result(const std::string& line);

 private:
  void clear();

  Verbosity verbosity_;
  bool isOnTerminal_;
  bool isShown_ = false;
  int steps_;
  int step_ = 0;
};

}  // namespace tools

#endif
