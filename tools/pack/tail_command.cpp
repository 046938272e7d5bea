#include <sys/stat.h>

#include <cstdio>
#include <memory>
#include <string>

#include "tools/input_error.h"
#include "tools/pack/commands.h"
#include "tools/tail_writer.h"

namespace tools {

namespace {
struct TailOptions {
  std::string path;
  std::string executable;
  std::string name;
  Tail tail;
};
}  // namespace

static bool isFolder(const std::string& path) {
  struct stat status {};
  return stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

static std::string tailPath(const std::string& path) {
  return isFolder(path) ? tailPathInBundle(path) : path;
}

static void writeTail(const TailOptions& options) {
  if (options.executable.empty()) {
    writeTailFile(tailPath(options.path), options.tail);
  } else {
    appendTail(options.executable, options.tail);
  }
}

static void printPlace(const FoundTail& found) {
  if (found.isAppended) {
    printf("place: appended, at byte %lld\n", found.offset);
  } else {
    printf("place: file\n");
  }
  printf("bytes-behind: %lld\n", found.bytesBehind);
}

static void readTail(const TailOptions& options) {
  const FoundTail found = findTail(tailPath(options.path));
  for (int i = 0; i < 11; ++i) {
    if (options.name == TAIL_VALUE_NAMES[i]) {
      printf("%s\n", found.values[i].c_str());
    } else if (options.name.empty()) {
      printf("%s: %s\n", TAIL_VALUE_NAMES[i], found.values[i].c_str());
    }
  }
  if (options.name.empty()) {
    printPlace(found);
  }
}

static void addValues(CLI::App* command, Tail* tail) {
  command->add_option("--app-name", tail->appName, "Name of the application, without '-' or '/'")
      ->required();
  command->add_option("--app-version", tail->appVersion, "Number of the application carried");
  command->add_option("--jre-version", tail->jreVersion, "Number of the runtime carried");
  command->add_option("--gu-version", tail->guVersion, "Number of the GenericUpdater carried");
  command->add_option("--min-splash-ms", tail->minSplashMs, "Shortest splash time in milliseconds")
      ->capture_default_str();
  command->add_option("--public-key", tail->publicKeyHex,
                      "Public key that verifies archives, as 'key show' prints it");
  command->add_flag("--can-override-splash", tail->canOverrideSplash,
                    "Let the application replace the splash image");
  command->add_option("--install-type", tail->installType, "perm_all, perm_user or temporary")
      ->capture_default_str();
  command->add_option("--silent-parameter", tail->silentParameter,
                      "Command-line word that asks for a silent run");
  command->add_option("--required-java-version", tail->requiredJavaVersion,
                      "Oldest Java version that the application runs on");
  command->add_option("--update-url", tail->updateUrl,
                      "Where updates are, or D when that is given from outside");
}

static void addWrite(CLI::App* tail) {
  CLI::App* command = tail->add_subcommand("write", "Writes a Tail record.");
  auto options = std::make_shared<TailOptions>();
  CLI::Option* path = command->add_option(
      "PATH", options->path, "A bundle, whose Contents/Resources/Tail is written, or a file");
  CLI::Option* append = command->add_option("--append", options->executable,
                                            "Put the record behind this executable instead");
  append->excludes(path);
  addValues(command, &options->tail);
  command->footer(
      "An executable with a record behind it cannot be code-signed; a bundle's Tail can.\n"
      "Example:\n  quorvane-pack tail write Demo.app --app-name Demo --app-version 12");
  command->callback([=] {
    if (path->empty() && append->empty()) {
      throw CLI::RequiredError("PATH or --append");
    }
    writeTail(*options);
  });
}

static void addRead(CLI::App* tail) {
  CLI::App* command = tail->add_subcommand("read", "Prints a Tail record.");
  auto options = std::make_shared<TailOptions>();
  command->add_option("PATH", options->path, "A bundle, a Tail file, or an executable")->required();
  command->add_option("--value", options->name, "Print nothing but this value, say app-name")
      ->check(CLI::IsMember(
          std::vector<std::string>(std::begin(TAIL_VALUE_NAMES), std::end(TAIL_VALUE_NAMES))));
  command->footer("Example:\n  quorvane-pack tail read Demo.app");
  command->callback([options] { readTail(*options); });
}

void addTailCommand(CLI::App* app) {
  CLI::App* tail =
      app->add_subcommand("tail", "Writes and shows the record that says what a bundle starts.");
  tail->require_subcommand(1);
  tail->footer("Example:\n  quorvane-pack tail read Demo.app");
  addWrite(tail);
  addRead(tail);
}

}  // namespace tools
