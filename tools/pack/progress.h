#ifndef QUORVANE_TOOLS_PACK_PROGRESS_H
#define QUORVANE_TOOLS_PACK_PROGRESS_H

#include <string>

namespace tools {

enum class Verbosity { quiet, normal, verbose };

// A command's progress output: on a terminal one line on standard error that is overwritten; a line
// for each step if verbose; else nothing.
class Progress {
 public:
  Progress(Verbosity verbosity, int steps);
  // Clears the line.
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  // Begins the next step. Throws InputError if the command was interrupted.
  void step(const std::string& what);

  // Prints a detail of the step if verbose.
  void detail(const std::string& what) const;

  // Prints a result line on standard output unless quiet.
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
