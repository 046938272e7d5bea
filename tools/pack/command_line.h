#ifndef QUORVANE_TOOLS_PACK_COMMAND_LINE_H
#define QUORVANE_TOOLS_PACK_COMMAND_LINE_H

#include <functional>
#include <string>
#include <vector>

// The vocabulary with which sub-commands describe themselves. The parser behind it is a large
// header, which only one file compiles. What a description points to must live until the command
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

  // It is required.
  Option required() const;
  // The help shows the current value of its variable as the default.
  Option withDefault() const;
  // The name of its value in the help.
  Option typeName(const char* name) const;
  // For texts(): every value needs the option's name before it.
  Option oneByOne() const;
  // It cannot be given together with `other`.
  Option excludes(const Option& other) const;
  // Any value not in `values` is a usage error.
  Option memberOf(const std::vector<std::string>& values) const;

 private:
  friend void requireOneOf(const Option& first, const Option& second, const char* names);
  CLI::Option* option_;
};

// While a command runs: ends it with the usage error "`names` is required" if neither option was
// given.
void requireOneOf(const Option& first, const Option& second, const char* names);

// While a command runs: ends it with the usage error `message`.
[[noreturn]] void failUsage(const std::string& message);

// A command being described. Names that begin with a dash are options, others are positional
// arguments.
class Command {
 public:
  explicit Command(CLI::App* app) : app_(app) {}

  // Adds a sub-command. `footer` is printed below its help: remarks, if any, and an example.
  Command add(const char* name, const char* help, const char* footer) const;
  // Adds a sub-command that itself has sub-commands, one of which must be given.
  Command addGroup(const char* name, const char* help, const char* footer) const;

  Option text(const char* name, std::string* value, const char* help) const;
  Option texts(const char* name, std::vector<std::string>* values, const char* help) const;
  // The words behind the first "--" are for somebody else: they go to `words`, whatever they are.
  void wordsBehindDashes(std::vector<std::string>* words) const;
  Option number(const char* name, int* value, const char* help) const;
  Option number(const char* name, long* value, const char* help) const;
  Option flag(const char* name, bool* value, const char* help) const;

  // Sets the function that runs the command once the command line has been read. At most one.
  void runs(std::function<void()> action) const;

 private:
  CLI::App* app_;
};

// The program's texts about itself.
struct ProgramTexts {
  const char* help;
  const char* version;
  const char* footer;
};

// Reads the command line of a program whose commands `describe` adds, and runs the command. Returns
// the exit status: 0, 1 if it threw (the message is printed after the program's name), 2 for a
// usage error, 128 plus the number of the signal that interrupted it.
int runCommandLine(int argc, char** argv, const ProgramTexts& texts,
                   const std::function<void(const Command&)>& describe);

}  // namespace tools

#endif
