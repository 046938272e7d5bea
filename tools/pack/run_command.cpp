#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cctype>
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
#include "tools/build/downloads.h"
#include "tools/bundle/bundle_reader.h"
#include "tools/bundle/output_folder.h"
#include "tools/delivery/delivered_bundle.h"
#include "tools/objects/target.h"
#include "tools/pack/commands.h"
#include "tools/system/child_process.h"
#include "tools/system/input_error.h"
#include "tools/system/last_lines.h"
#include "tools/system/temporary_folder.h"
#include "tools/system/texts.h"
#include "tools/system/throw_away_account.h"

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

// The download to run in an output folder: the offline installer for this machine.
static std::string downloadIn(const std::string& path) {
  const std::vector<std::string> names = madeIn(path);
  for (const std::string& name : names) {
    if (isOfflineDownload(name, thisMachine())) {
      return path + "/" + name;
    }
  }
  if (!names.empty()) {
    throw InputError(path + " has no offline installer for this machine, " +
                     targetText(thisMachine()) + "; build one with --target");
  }
  throw InputError(path +
                   " is neither a bundle nor a folder that 'quorvane-pack build' made; build "
                   "first, or name a bundle");
}

namespace {
// What is run, and its name in messages.
struct Program {
  std::string executable;
  std::string name;
};
}  // namespace

// The executable of the bundle `path`, or of the download there or in the output folder `path`,
// which is unpacked into the new folder `work`.
static Program programAt(const std::string& path, const std::string& work) {
  if (fs::exists(path + "/Contents")) {
    const std::string executable = executableOfBundle(path);
    return {executable, executable};
  }
  const std::string download = fs::is_regular_file(path) ? path : downloadIn(path);
  fs::create_directory(work);
  return {executableOfBundle(unpackBundle(download, work)), download};
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
static int runIn(const ThrowAwayAccount& account, const Program& program,
                 const std::vector<std::string>& arguments, const std::optional<Logs>& logs) {
  std::vector<std::string> words = {fs::absolute(program.executable)};
  words.insert(words.end(), arguments.begin(), arguments.end());
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
    throw InputError(program.name + " cannot be started: " + strerror(error) +
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

// Whether the line on standard error repeats one of the log, as the system's log does there: with
// date, time, name and, in brackets, two numbers. What such a line continues with is empty.
static bool isOfSystemLog(const std::string& line) {
  static const char kStart[] = "dddd-dd-dd dd:dd:dd.ddd ";
  constexpr size_t kLength = sizeof kStart - 1;
  if (line.size() < kLength) {
    return line.empty();
  }
  for (size_t i = 0; i < kLength; ++i) {
    const bool isDigit = isdigit(static_cast<unsigned char>(line[i])) != 0;
    if (kStart[i] == 'd' ? !isDigit : line[i] != kStart[i]) {
      return false;
    }
  }
  const size_t open = line.find('[', kLength);
  const size_t close = open == std::string::npos ? open : line.find("] ", open);
  return close != std::string::npos && line.find_first_not_of("0123456789:", open + 1) == close;
}

// The end of what the program wrote: to standard output, where its log is, and to standard error.
static std::string endOf(const std::optional<Logs>& logs) {
  if (!logs) {
    return "";
  }
  const std::string out = lastLines(logs->out, kShownLines);
  const std::string err = lastLines(logs->err, kShownLines, isOfSystemLog);
  if (out.empty() && err.empty()) {
    return "; it printed nothing";
  }
  std::string text = out.empty() ? "" : "; the end of its output:" + out;
  if (!err.empty()) {
    text += (out.empty() ? "; " : "\n") + std::string("the end of its standard error:") + err;
  }
  return text;
}

static void requireGoodEnd(const std::string& program, int status,
                           const std::optional<Logs>& logs) {
  const std::string exception = logs ? javaExceptionIn(logs->err, "\"main\"") : "";
  if (!WIFEXITED(status)) {
    throw InputError(program + " was killed by signal " + std::to_string(WTERMSIG(status)) +
                     endOf(logs));
  }
  // The installer's status does not show an exception that ends the application.
  if (!exception.empty()) {
    throw InputError(program + " ended with status " + std::to_string(WEXITSTATUS(status)) +
                     " and its application with an exception:" + exception);
  }
  if (WEXITSTATUS(status) != 0) {
    throw InputError(program + " ended with status " + std::to_string(WEXITSTATUS(status)) +
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
  removeAbandonedFolders("/tmp");
  const TemporaryFolder work("/tmp");
  const Program program = programAt(options.path, work / "bundle");
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
  std::vector<std::string> arguments = options.arguments;
  arguments.insert(arguments.end(), options.argumentsBehindDashes.begin(),
                   options.argumentsBehindDashes.end());
  const int status = runIn(account, program, arguments, logs);
  if (!options.keep.empty()) {
    keepHome(account.home(), options.keep);
  }
  requireGoodEnd(program.name, status, logs);
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
  command.text("PATH", &options->path, "A folder that 'build' made, a download in it, or a bundle")
      .withDefault();
  command.texts("ARGUMENTS", &options->arguments, "Arguments for the installer, after --");
  command.wordsBehindDashes(&options->argumentsBehindDashes);
  command.text("--keep", &options->keep, "Copy the home into this new folder at the end");
  command.flag("-v,--verbose", &options->isVerbose,
               "Show the output of the installer and the application");
  command.runs([options] { runBundle(*options); });
}

}  // namespace tools
