#include "tests/macos/run/test/guest.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include "tests/support/files.h"
#include "tests/support/unavailable.h"

namespace test {

static const char kCompiler[] = QUORVANE_SOURCE "/build-macos/tools/x86_64/c++";
static const char kSdk[] = QUORVANE_SOURCE "/platform/macos-sdk";
static const char kSources[] = QUORVANE_SOURCE "/tests/macos/run/guests/";

static bool isNewer(const std::string& file, const std::string& than) {
  struct stat one, other;
  return stat(file.c_str(), &one) == 0 && stat(than.c_str(), &other) == 0 &&
         one.st_mtime >= other.st_mtime;
}

// Held while an executable is built: tests run beside one another.
class BuildLock {
 public:
  explicit BuildLock(const std::string& executable)
      : handle_(open((executable + ".lock").c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0644)) {
    flock(handle_, LOCK_EX);
  }
  ~BuildLock() { close(handle_); }
  BuildLock(const BuildLock&) = delete;
  BuildLock& operator=(const BuildLock&) = delete;

 private:
  int handle_;
};

static Command compile(const std::string& source, const std::string& executable) {
  Command command{{kCompiler, "-std=c++17", "-O1", "-Wall", "-Wextra", "-Werror"}};
  std::vector<std::string>& words = command.arguments;
  const std::string sdk = kSdk;
  if (source.size() > 3 && source.compare(source.size() - 3, 3, ".mm") == 0) {
    words.insert(words.end(),
                 {"-Wno-unused-command-line-argument", "-isystem", sdk + "/include", "-iframework",
                  sdk + "/Frameworks", "-F", sdk + "/Frameworks", "-L", sdk + "/lib", "-framework",
                  "AppKit", "-framework", "Foundation", "-framework", "CoreFoundation", "-lobjc"});
  }
  words.insert(words.end(), {"-o", executable, source});
  command.seconds = 600;  // the first one compiles the C++ library
  return command;
}

void Guest::SetUp() {
  if (!exists(kCompiler)) {
    return unavailable("there is no compiler for macOS; scripts/macos-tools gets it");
  }
  ASSERT_TRUE(exists(QUORVANE_BIN "/macrun"));
}

std::string Guest::build(const std::string& name) {
  const std::string built = QUORVANE_BIN "/../macos-guests/";
  mkdir(built.c_str(), 0755);
  const std::string executable = built + name.substr(0, name.rfind('.'));
  const BuildLock lock(executable);
  if (!isNewer(executable, kSources + name)) {
    const std::string fresh = executable + ".new";
    const Result result = run(compile(kSources + name, fresh));
    EXPECT_EQ(0, result.status) << result.err;
    EXPECT_EQ(0, rename(fresh.c_str(), executable.c_str()));
  }
  return executable;
}

Result Guest::runGuest(const std::vector<std::string>& arguments) {
  Command command{{QUORVANE_BIN "/macrun"}};
  command.arguments.insert(command.arguments.end(), arguments.begin(), arguments.end());
  command.environment["MACRUN_TRACE"] = folder_ / "trace";
  command.folder = folder_.path();
  return run(command);
}

std::vector<std::string> Guest::linesOfGuest(const std::string& name,
                                             const std::vector<std::string>& arguments) {
  std::vector<std::string> words{build(name)};
  words.insert(words.end(), arguments.begin(), arguments.end());
  const Result result = runGuest(words);
  EXPECT_EQ("", result.err);
  EXPECT_EQ(0, result.signal);
  return linesOf(result.out);
}

std::vector<std::string> Guest::traceLines() const {
  return exists(folder_ / "trace") ? linesOf(readFile(folder_ / "trace"))
                                   : std::vector<std::string>{};
}

}  // namespace test
