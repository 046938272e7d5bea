#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/display.h"
#include "tools/bundle/output_folder.h"
#include "tools/pack/commands.h"
#include "tools/system/child_process.h"
#include "tools/system/input_error.h"
#include "tools/system/last_lines.h"
#include "tools/system/temporary_folder.h"
#include "tools/system/texts.h"
#include "tools/system/throw_away_account.h"
#include "tools/verify/bundle_reader.h"

namespace fs = std::filesystem;

namespace tools {

namespace {
struct RunOptions {
  std::string path = "dist";
  std::vector<std::string> arguments;
  std::vector<std::string> argumentsBehindDashes;
  std::string keep;
  bool isVerbose = false;
};

// The files with a program's output.
struct Logs {
  std::string out;
  std::string err;
};
}  // namespace

static const size_t kShownLines = 12;

// The offline installer among the names in an output folder, recognised by the two bundles beside
// it, because an application's own name may end like an installer's. Empty if there is none.
static std::string offlineInstallerAmong(const std::vector<std::string>& names) {
  const std::string onlineEnd = " Online Installer.app";
  const auto exists = [&](const std::string& name) {
    return std::find(names.begin(), names.end(), name) != names.end();
  };
  for (const std::string& name : names) {
    if (endsWith(name, onlineEnd)) {
      const std::string application = name.substr(0, name.size() - onlineEnd.size());
      if (exists(application + ".app") && exists(application + " Installer.app")) {
        return application + " Installer.app";
      }
    }
  }
  return "";
}

// The bundle to run: `path` itself, or the offline installer in an output folder.
static std::string bundleAt(const std::string& path) {
  if (fs::exists(path + "/Contents")) {
    return path;
  }
  const std::string name = offlineInstallerAmong(madeIn(path));
  if (name.empty()) {
    throw InputError(path +
                     " is neither a bundle nor a folder that 'quorvane-pack build' made; build "
                     "first, or name a bundle");
  }
  return path + "/" + name;
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

// Runs the program with its output in the files of `logs`, or on this process's streams if there
// are none. Returns its status as from waitpid().
static int runIn(const ThrowAwayAccount& account, const std::vector<std::string>& words,
                 const std::optional<Logs>& logs) {
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  if (logs) {
    constexpr int kFlags = O_WRONLY | O_CREAT | O_TRUNC;
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, logs->out.c_str(), kFlags, 0600);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, logs->err.c_str(), kFlags, 0600);
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

// Java's output in the file about the first uncaught exception of a thread whose quoted name begins
// with `thread`: message and causes, without stack traces. Empty for none.
static std::string javaExceptionIn(const std::string& path, const std::string& thread) {
  const std::string first = "Exception in thread " + thread;
  std::ifstream in(path);
  std::string text;
  bool isMessage = false;
  size_t shown = 0;
  for (std::string line; std::getline(in, line);) {
    if (startsWith(line, text.empty() ? first : "Caused by: ")) {
      isMessage = true;
    } else if (startsWith(line, "\t")) {
      isMessage = false;
    } else if (!text.empty() && !isMessage) {
      break;
    }
    if (isMessage && shown++ < kShownLines) {
      text += "\n  " + line;
    }
  }
  return text;
}

// The end of the program's output. Its log is on standard output; a program that could not start
// has written only to standard error.
static std::string endOf(const std::optional<Logs>& logs) {
  if (!logs) {
    return "";
  }
  const std::string out = lastLines(logs->out, kShownLines);
  const std::string end = out.empty() ? lastLines(logs->err, kShownLines) : out;
  return end.empty() ? "; it printed nothing" : "; the end of its output:" + end;
}

static void requireGoodEnd(const std::string& executable, int status,
                           const std::optional<Logs>& logs) {
  const std::string exception = logs ? javaExceptionIn(logs->err, "\"main\"") : "";
  if (!WIFEXITED(status)) {
    throw InputError(executable + " was killed by signal " + std::to_string(WTERMSIG(status)) +
                     endOf(logs));
  }
  // The installer's status does not show an exception that ends the application.
  if (!exception.empty()) {
    throw InputError(executable + " ended with status " + std::to_string(WEXITSTATUS(status)) +
                     " and its application with an exception:" + exception);
  }
  if (WEXITSTATUS(status) != 0) {
    throw InputError(executable + " ended with status " + std::to_string(WEXITSTATUS(status)) +
                     endOf(logs));
  }
}

// Prints the version folders that are now in the account's home.
static void sayInstalled(const std::string& home) {
  std::error_code ignored;
  for (const auto& entry : fs::recursive_directory_iterator(home, ignored)) {
    if (entry.is_directory(ignored) && !entry.is_symlink(ignored) &&
        endsWith(entry.path().filename(), "-complete")) {
      printf("installed: ~/%s\n", entry.path().lexically_relative(home).c_str());
    }
  }
}

// Creates the folder for the kept home before the run, which would be lost if the folder cannot be
// created.
static void makeKeptFolder(const std::string& folder) {
  if (fs::exists(fs::symlink_status(folder))) {
    throw InputError(folder + " exists; name a new folder with --keep");
  }
  std::error_code error;
  if (!fs::create_directory(folder, error)) {
    throw InputError("cannot create the folder " + folder + ": " + error.message());
  }
}

static void keepHome(const std::string& home, const std::string& folder) {
  std::error_code error;
  fs::copy(home, folder, fs::copy_options::recursive | fs::copy_options::copy_symlinks, error);
  if (error) {
    throw InputError("the home cannot be copied to " + folder + ": " + error.message());
  }
  printf("kept: %s\n", folder.c_str());
}

// An exception in a thread other than the main one does not end the application, but may still be
// why it failed.
static void tellOfExceptions(const std::optional<Logs>& logs) {
  const std::string exception = logs ? javaExceptionIn(logs->err, "\"") : "";
  if (!exception.empty()) {
    fprintf(stderr, "quorvane-pack: the application threw an exception:%s\n", exception.c_str());
  }
}

static void runBundle(const RunOptions& options) {
  const std::string executable = executableOfBundle(bundleAt(options.path));
  const TemporaryFolder work("/tmp");
  const ThrowAwayAccount account(work / "account");
  if (!options.keep.empty()) {
    makeKeptFolder(options.keep);
  }
  if (!isDisplayAvailable()) {
    fprintf(stderr,
            "quorvane-pack: no display available: the installer shows no windows, and an "
            "application that needs one fails\n");
  }
  const std::optional<Logs> logs =
      options.isVerbose ? std::nullopt : std::optional(Logs{work / "out", work / "err"});
  std::vector<std::string> words = {fs::absolute(executable)};
  words.insert(words.end(), options.arguments.begin(), options.arguments.end());
  words.insert(words.end(), options.argumentsBehindDashes.begin(),
               options.argumentsBehindDashes.end());
  const int status = runIn(account, words, logs);
  if (!options.keep.empty()) {
    keepHome(account.home(), options.keep);
  }
  requireGoodEnd(executable, status, logs);
  tellOfExceptions(logs);
  sayInstalled(account.home());
  printf("the installer ended with status 0; its temporary home was removed\n");
}

void addRunCommand(const Command& app) {
  const Command command = app.add(
      "run", "Runs an installer in a temporary home, to try it.",
      "Works on Linux only, where nss_wrapper provides the home. The command ends when the\n"
      "application does. It needs a display, as the application does.\n"
      "Example:\n  quorvane-pack run dist --verbose");
  auto options = std::make_shared<RunOptions>();
  command.text("PATH", &options->path, "A folder that 'build' made, or a bundle").withDefault();
  command.texts("ARGUMENTS", &options->arguments, "Arguments for the installer, after --");
  command.wordsBehindDashes(&options->argumentsBehindDashes);
  command.text("--keep", &options->keep, "Copy the home into this new folder at the end");
  command.flag("-v,--verbose", &options->isVerbose,
               "Show the output of the installer and the application");
  command.runs([options] { runBundle(*options); });
}

}  // namespace tools
