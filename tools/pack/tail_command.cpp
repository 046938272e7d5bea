#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>

#include "tools/formats/tail_writer.h"
#include "tools/pack/commands.h"
#include "tools/pack/replaceable.h"
#include "tools/system/input_error.h"

namespace fs = std::filesystem;

namespace tools {

namespace {
struct TailOptions {
  std::string path;
  std::string executable;
  std::string name;
  Tail tail;
  bool mayReplace = false;
};
}  // namespace

static std::string tailPath(const std::string& path) {
  std::error_code ignored;
  return fs::is_directory(path, ignored) ? tailPathInBundle(path) : path;
}

// A record may be replaced, but nothing before or after it.
static void requireRecordAlone(const std::string& path) {
  const FoundTail found = findTail(path);
  if (found.isAppended) {
    throw InputError("it is appended to an executable");
  }
  if (found.bytesBehind > 0) {
    throw InputError(std::to_string(found.bytesBehind) + " bytes of archives follow the record");
  }
}

static void writeTail(const TailOptions& options) {
  if (!options.executable.empty()) {
    appendTail(options.executable, options.tail);
    return;
  }
  const std::string path = tailPath(options.path);
  if (!options.mayReplace) {
    requireReplaceable(path, "bare Tail record", [&] { requireRecordAlone(path); });
  }
  writeTailFile(path, options.tail);
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
  for (int i = 0; i < TAIL_VALUE_COUNT; ++i) {
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

static void addValues(const Command& command, Tail* tail) {
  command.text("--app-name", &tail->appName, "Name of the application, without '-' or '/'")
      .required();
  command.text("--app-version", &tail->appVersion, "Version of the carried application");
  command.text("--jre-version", &tail->jreVersion, "Version of the carried runtime");
  command.text("--gu-version", &tail->guVersion, "Version of the carried GenericUpdater");
  command
      .number("--min-splash-ms", &tail->minSplashMs,
              "Minimum splash time in milliseconds, for the updater")
      .withDefault();
  command.text("--public-key", &tail->publicKeyHex,
               "Public key that verifies archives, as 'key show' prints it");
  command.flag("--can-override-splash", &tail->canOverrideSplash,
               "Let the property splash_image replace the splash image");
  command.text("--install-type", &tail->installType, "perm_all, perm_user or temporary")
      .withDefault();
  command.text("--silent-parameter", &tail->silentParameter, "Argument that requests a silent run");
  command.text("--required-java-version", &tail->requiredJavaVersion,
               "Oldest system Java that an online installer adopts, a whole number");
  command.text("--update-url", &tail->updateUrl,
               "The update site, or D if the property update_url gives it");
}

static void addTailWrite(const Command& tail) {
  const Command command =
      tail.add("write", "Writes a Tail record.",
               "An executable with an appended record cannot be code-signed; a bundle's Tail can.\n"
               "Example:\n  quorvane-pack tail write Demo.app --app-name Demo --app-version 12");
  auto options = std::make_shared<TailOptions>();
  const Option path = command.text("PATH", &options->path,
                                   "A bundle, to write its Contents/Resources/Tail, or a file");
  const Option append = command.text("--append", &options->executable,
                                     "Append the record to this executable instead");
  append.excludes(path);
  command.flag("--force", &options->mayReplace, "Replace any existing file");
  addValues(command, &options->tail);
  command.runs([=] {
    requireOneOf(path, append, "PATH or --append");
    writeTail(*options);
  });
}

static void addTailRead(const Command& tail) {
  const Command command =
      tail.add("read", "Prints a Tail record.", "Example:\n  quorvane-pack tail read Demo.app");
  auto options = std::make_shared<TailOptions>();
  command.text("PATH", &options->path, "A bundle, a Tail file, or an executable").required();
  command.text("--value", &options->name, "Print only this value, such as app-name")
      .memberOf({std::begin(TAIL_VALUE_NAMES), std::end(TAIL_VALUE_NAMES)});
  command.runs([options] { readTail(*options); });
}

void addTailCommand(const Command& app) {
  const Command tail =
      app.addGroup("tail", "Writes and shows the record that says what a bundle starts.",
                   "Example:\n  quorvane-pack tail read Demo.app");
  addTailWrite(tail);
  addTailRead(tail);
}

}  // namespace tools
