#ifndef QUORVANE_TOOLS_SYSTEM_PROGRESS_H
#define QUORVANE_TOOLS_SYSTEM_PROGRESS_H

#include <chrono>
#include <string>

namespace tools {

enum class Verbosity { quiet, normal, verbose };

// A command's progress output on standard error: on a terminal one line that is overwritten; a line
// for each step if verbose or if the output goes elsewhere; nothing if quiet.
class Progress {
 public:
  // `steps` is their number, 0 if it is not known.
  Progress(Verbosity verbosity, int steps);
  // Clears the line.
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  // Begins the next step. Throws InputError if the command was interrupted.
  void step(const std::string& what);

  // Prints a detail of the step if verbose.
  void detail(const std::string& what) const;

  // Says how long everything took, if that was a second or more, unless quiet.
  void finish();

  // Prints a result line on standard output unless quiet.
  void result(const std::string& line);

 private:
  void clear();

  Verbosity verbosity_;
  bool isOnTerminal_;
  bool isShown_ = false;
  int steps_;
  std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
  int step_ = 0;
};

}  // namespace tools

#endif
