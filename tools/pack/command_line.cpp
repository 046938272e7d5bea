#include "tools/pack/command_line.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <exception>
#include <filesystem>
#include <map>
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

namespace {
// The words behind "--", by the names of the commands that hand them on.
std::map<std::string, std::vector<std::string>*> behindDashes;
}  // namespace

void Command::wordsBehindDashes(std::vector<std::string>* words) const {
  behindDashes[app_->get_name()] = words;
}

// Takes the words behind "--" for the command, if it hands them on. Returns the number of words
// left for the parser.
static int splitAtDashes(int argc, char** argv) {
  const auto found = argc < 2 ? behindDashes.end() : behindDashes.find(argv[1]);
  char** const end = argv + argc;
  char** const dashes =
      std::find_if(argv, end, [](const char* word) { return strcmp(word, "--") == 0; });
  if (found == behindDashes.end() || dashes == end) {
    return argc;
  }
  found->second->assign(dashes + 1, end);
  return static_cast<int>(dashes - argv);
}

// How many letters to add, take away, replace or exchange with the next one make `to` of `from`.
static size_t distance(const std::string& from, const std::string& to) {
  std::vector<std::vector<size_t>> steps(from.size() + 1, std::vector<size_t>(to.size() + 1));
  for (size_t i = 0; i <= from.size(); ++i) {
    for (size_t k = 0; k <= to.size(); ++k) {
      if (i == 0 || k == 0) {
        steps[i][k] = i + k;
        continue;
      }
      const bool isSame = from[i - 1] == to[k - 1];
      steps[i][k] = std::min(
          {steps[i - 1][k] + 1, steps[i][k - 1] + 1, steps[i - 1][k - 1] + (isSame ? 0 : 1)});
      if (i > 1 && k > 1 && from[i - 1] == to[k - 2] && from[i - 2] == to[k - 1]) {
        steps[i][k] = std::min(steps[i][k], steps[i - 2][k - 2] + 1);
      }
    }
  }
  return steps[from.size()][to.size()];
}

// Returns the sub-command whose name is nearest to `word`, or an empty text.
static std::string nearestCommand(const CLI::App& app, const std::string& word) {
  constexpr size_t kFarthest = 2;
  std::string nearest;
  size_t least = kFarthest + 1;
  for (const CLI::App* command : app.get_subcommands(nullptr)) {
    const size_t steps =
        distance(word.substr(0, 2 * command->get_name().size()), command->get_name());
    if (steps < least && steps < command->get_name().size() / 2 + 1) {
      least = steps;
      nearest = command->get_name();
    }
  }
  return nearest;
}

// Complains about a first word that names no command, and returns whether it did.
static bool complainsOfCommand(const CLI::App& app, int argc, char** argv) {
  const CLI::App* group = &app;
  for (int i = 1; i < argc && argv[i][0] != '-'; ++i) {
    const auto commands = group->get_subcommands(nullptr);
    if (commands.empty()) {
      return false;
    }
    const auto found = std::find_if(commands.begin(), commands.end(), [&](const CLI::App* command) {
      return command->get_name() == argv[i];
    });
    if (found == commands.end()) {
      const std::string nearest = nearestCommand(*group, argv[i]);
      fprintf(stderr,
              "quorvane-pack: there is no command '%s'%s\nRun with --help for more information.\n",
              argv[i], nearest.empty() ? "" : ("; did you mean '" + nearest + "'?").c_str());
      return true;
    }
    group = *found;
  }
  return false;
}

// Prints what stopped a command: a library's exception in the packager's own words.
static void printError(const std::exception& error) {
  const auto* system = dynamic_cast<const std::filesystem::filesystem_error*>(&error);
  if (system == nullptr) {
    fprintf(stderr, "quorvane-pack: %s\n", error.what());
  } else {
    fprintf(stderr, "quorvane-pack: %s cannot be used: %s\n", system->path1().c_str(),
            system->code().message().c_str());
  }
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
    app.parse(splitAtDashes(argc, argv), argv);
  } catch (const CLI::ParseError& error) {
    if (complainsOfCommand(app, argc, argv)) {
      return kUsageError;
    }
    return app.exit(error) == 0 ? outputStatus() : kUsageError;
  } catch (const std::exception& error) {
    printError(error);
    return notedInterruption() == 0 ? kInputError : kInterrupted + notedInterruption();
  }
  return outputStatus();
}

}  // namespace tools
