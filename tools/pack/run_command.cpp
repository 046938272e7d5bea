#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "tools/bundle_reader.h"
#include "tools/input_error.h"
#include "tools/last_lines.h"
#include "tools/output_folder.h"
#include "tools/pack/commands.h"
#include "tools/temporary_folder.h"
#include "tools/throw_away_account.h"

namespace fs = std::filesystem;

namespace tools {

namespace {
struct RunOptions {
  std::string path = "dist";
  std::vector<std::string> arguments;
  std::string keep;
  bool isVerbose = false;
};
}  // namespace

static const size_t kShownLines = 12;

static bool endsWith(const std::string& text, const std::string& end) {
  return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

// The bundle that is meant: `path` itself, or the offline installer in an output folder.
static std::string bundleAt(const std::string& path) {
  if (fs::exists(path + "/Contents")) {
    return path;
  }
  for (const std::string& name : madeIn(path)) {
    if (endsWith(name, " Installer.app") && !endsWith(name, " Online Installer.app")) {
      return path + "/" + name;
    }
  }
  throw InputError(path +
                   " is neither a bundle nor a folder that 'quorvane-pack build' made; build "
                   "first, or name a bundle");
}

static std::vector<char*> vectorOf(const std::vector<std::string>& texts) {
  std::vector<char*> vector;
  for (const std::string& text : texts) {
    vector.push_back(const_cast<char*>(text.c_str()));
  }
  vector.push_back(nullptr);
  return vector;
}

// Waits for the child; an interrupt from the keyboard ends the child, not this process.
static int waitFor(pid_t child) {
  const auto before = signal(SIGINT, SIG_IGN);
  int status = 0;
  while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
  }
  signal(SIGINT, before);
  return status;
}

// Runs the program with its output in the file `log`, or on this process's streams when that is
// empty. Returns how it ended, as waitpid() says it.
static int runIn(const ThrowAwayAccount& account, const std::vector<std::string>& words,
                 const std::string& log) {
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  if (!log.empty()) {
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, log.c_str(),
                                     O_WRONLY | O_CREAT | O_TRUNC, 0600);
    posix_spawn_file_actions_adddup2(&actions, STDOUT_FILENO, STDERR_FILENO);
  }
  const std::vector<std::string> environment = account.environment();
  pid_t child = 0;
  const int error = posix_spawn(&child, words[0].c_str(), &actions, nullptr, vectorOf(words).data(),
                                vectorOf(environment).data());
  posix_spawn_file_actions_destroy(&actions);
  if (error != 0) {
    throw InputError(words[0] + " cannot be started: " + strerror(error) +
                     "; was it built for this system?");
  }
  return waitFor(child);
}

static void requireGoodEnd(const std::string& executable, int status, const std::string& log) {
  if (WIFEXITED(status) && WEXITSTATUS(status) == 0) {
    return;
  }
  const std::string how = WIFEXITED(status)
                              ? "ended with status " + std::to_string(WEXITSTATUS(status))
                              : "was ended by signal " + std::to_string(WTERMSIG(status));
  throw InputError(
      executable + " " + how +
      (log.empty() ? "" : "; the end of what it printed:" + lastLines(log, kShownLines)));
}

// Says which version folders there are in the account's home now.
static void sayInstalled(const std::string& home) {
  std::error_code ignored;
  for (const auto& entry : fs::recursive_directory_iterator(home, ignored)) {
    if (entry.is_directory(ignored) && !entry.is_symlink(ignored) &&
        endsWith(entry.path().filename(), "-complete")) {
      printf("installed: ~/%s\n", entry.path().lexically_relative(home).c_str());
    }
  }
}

static void runBundle(const RunOptions& options) {
  const std::string executable = executableOfBundle(bundleAt(options.path));
  if (!options.keep.empty() && fs::exists(options.keep)) {
    throw InputError(options.keep + " exists; name a new folder with --keep");
  }
  const TemporaryFolder work("/tmp");
  const ThrowAwayAccount account(work / "account");
  const std::string log = options.isVerbose ? "" : work / "log";
  std::vector<std::string> words = {fs::absolute(executable)};
  words.insert(words.end(), options.arguments.begin(), options.arguments.end());
  const int status = runIn(account, words, log);
  if (!options.keep.empty()) {
    fs::copy(account.home(), options.keep,
             fs::copy_options::recursive | fs::copy_options::copy_symlinks);
    printf("kept: %s\n", options.keep.c_str());
  }
  requireGoodEnd(executable, status, log);
  sayInstalled(account.home());
  printf("the application ended well; its throw-away home is gone\n");
}

void addRunCommand(const Command& app) {
  const Command command = app.add(
      "run", "Runs an installer in a throw-away home, to try it.",
      "The command ends when the application does. It needs a display, as the application does.\n"
      "Example:\n  quorvane-pack run dist --verbose");
  auto options = std::make_shared<RunOptions>();
  command.text("PATH", &options->path, "A folder that 'build' made, or a bundle").withDefault();
  command.texts("ARGUMENTS", &options->arguments,
                "Words for the installer's command line, behind --");
  command.text("--keep", &options->keep, "Copy the home into this new folder at the end");
  command.flag("-v,--verbose", &options->isVerbose,
               "Show what the installer and the application print");
  command.runs([options] { runBundle(*options); });
}

}  // namespace tools
