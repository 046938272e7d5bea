#include "tools/pack/command_line.h"

#include <CLI/CLI.hpp>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <exception>
#include <utility>

#include "tools/system/interruption.h"

namespace tools {

static const int kInputError = 1;
static const int kUsageError = 2;
static const int kInterrupted = 128;  // plus the signal's number

Option Option::required() const {
  option_->required();
  return *this;
}

Option Option::withDefault() const {
  option_->capture_default_str();
  return *this;
}

Option Option::typeName(const char* name) const {
  option_->type_name(name);
  return *this;
}

Option Option::oneByOne() const {
  option_->allow_extra_args(false);
  return *this;
}

Option Option::excludes(const Option& other) const {
  option_->excludes(other.option_);
  return *this;
}

Option Option::memberOf(const std::vector<std::string>& values) const {
  option_->check(CLI::IsMember(values));
  return *this;
}

void requireOneOf(const Option& first, const Option& second, const char* names) {
  if (first.option_->empty() && second.option_->empty()) {
    throw CLI::RequiredError(names);
  }
}

void failUsage(const std::string& message) {
  throw CLI::ValidationError(message);
}

Command Command::add(const char* name, const char* help, const char* footer) const {
  CLI::App* command = app_->add_subcommand(name, help);
  command->footer(footer);
  return Command(command);
}

Command Command::addGroup(const char* name, const char* help, const char* footer) const {
  const Command group = add(name, help, footer);
  group.app_->require_subcommand(1);
  return group;
}

Option Command::text(const char* name, std::string* value, const char* help) const {
  return Option(app_->add_option(name, *value, help));
}

Option Command::texts(const char* name, std::vector<std::string>* values, const char* help) const {
  return Option(app_->add_option(name, *values, help));
}

Option Command::number(const char* name, int* value, const char* help) const {
  return Option(app_->add_option(name, *value, help));
}

Option Command::number(const char* name, long* value, const char* help) const {
  return Option(app_->add_option(name, *value, help));
}

Option Command::flag(const char* name, bool* value, const char* help) const {
  return Option(app_->add_flag(name, *value, help));
}

void Command::runs(std::function<void()> action) const {
  app_->final_callback(std::move(action));
}

// The output must have been written completely.
static int outputStatus() {
  if (fflush(stdout) == 0 && ferror(stdout) == 0) {
    return 0;
  }
  fprintf(stderr, "quorvane-pack: the output cannot be written: %s\n", strerror(errno));
  return kInputError;
}

int runCommandLine(int argc, char** argv, const ProgramTexts& texts,
                   const std::function<void(const Command&)>& describe) {
  CLI::App app{texts.help};
  app.set_version_flag("--version", texts.version);
  app.require_subcommand(1);
  app.footer(texts.footer);
  describe(Command(&app));
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? outputStatus() : kUsageError;
  } catch (const std::exception& error) {
    fprintf(stderr, "quorvane-pack: %s\n", error.what());
    return notedInterruption() == 0 ? kInputError : kInterrupted + notedInterruption();
  }
  return outputStatus();
}

}  // namespace tools
