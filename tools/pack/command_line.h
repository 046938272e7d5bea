#ifndef QUORVANE_TOOLS_PACK_COMMAND_LINE_H
#define QUORVANE_TOOLS_PACK_COMMAND_LINE_H

#include <functional>
#include <string>
#include <vector>

// The words with which the sub-commands describe themselves. The parser behind them is a large
// header, which one file alone compiles. What a description points to must live until the command
// line has been run.

namespace CLI {
class App;
class Option;
}  // namespace CLI

namespace tools {

// An option or an argument of a command. Each function changes it and returns it.
class Option {
 public:
  explicit Option(CLI::Option* option) : option_(option) {}

  // It is a usage error to leave it out.
  Option required() const;
  // The help names the value that its variable has now.
  Option withDefault() const;
  // What the help calls its value.
  Option typeName(const char* name) const;
  // Of texts(): every word needs the option's name before it.
  Option oneByOne() const;
  // It cannot be given together with `other`.
  Option excludes(const Option& other) const;
  // Anything but one of `values` is a usage error.
  Option memberOf(const std::vector<std::string>& values) const;

 private:
  friend void requireOneOf(const Option& first, const Option& second, const char* names);
  CLI::Option* option_;
};

// For a command that runs: ends it with the usage error "`names` is required" when neither option
// was given.
void requireOneOf(const Option& first, const Option& second, const char* names);

// For a command that runs: ends it with the usage error `message`.
[[noreturn]] void failUsage(const std::string& message);

// A command that is being described. Names with dashes in front are options, others arguments that
// are told by their order.
class Command {
 public:
  explicit Command(CLI::App* app) : app_(app) {}

  // Adds a sub-command. `footer` stands below its help: remarks, if any, and an example.
  Command add(const char* name, const char* help, const char* footer) const;
  // Adds a sub-command that has sub-commands itself, one of which must be given.
  Command addGroup(const char* name, const char* help, const char* footer) const;

  Option text(const char* name, std::string* value, const char* help) const;
  Option texts(const char* name, std::vector<std::string>* values, const char* help) const;
  Option number(const char* name, int* value, const char* help) const;
  Option number(const char* name, long* value, const char* help) const;
  Option flag(const char* name, bool* value, const char* help) const;

  // What the command does once the command line has been read. At most one such function.
  void runs(std::function<void()> action) const;

 private:
  CLI::App* app_;
};

// What the program says about itself.
struct ProgramTexts {
  const char* help;
  const char* version;
  const char* footer;
};

// Reads the command line of a program whose commands `describe` adds, and runs the command. Returns
// the exit status: 0, 1 when it threw (which is printed behind the program's name), 2 for a usage
// error, 128 and the number of the signal that interrupted it.
int runCommandLine(int argc, char** argv, const ProgramTexts& texts,
                   const std::function<void(const Command&)>& describe);

}  // namespace tools

#endif
