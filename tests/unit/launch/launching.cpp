#include "tests/unit/launch/launching.h"

#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <thread>

#include "launch/retry.h"
#include "tests/support/capture.h"

static const char kErrorRule[] = "*******************************************";

static std::function<void(int)> pauseHook;
static int pauseCount = 0;

// Marks a pause in the output; the number is checked by the tests that count the marks.
static void recordPause(unsigned seconds) {
  printf("\npaused for %u seconds\n", seconds);
  fflush(stdout);
  pauseHook(++pauseCount);
}

// These messages have no line end of their own, so that the next line follows them directly.
static std::string withEveryLineEnded(std::string out) {
  for (const char* message :
       {"[BundleLoader] Bundle is null?", "[BundleLoader] Could not load JRE bundle!"}) {
    const size_t at = out.find(message);
    if (at != std::string::npos) {
      out.insert(at + strlen(message), "\n");
    }
  }
  return out;
}

static void waitForFile(const std::string& path) {
  for (int i = 0; i < 2000 && !test::exists(path); ++i) {
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
}

int Launching::callLaunch(std::vector<char*>* argv) const {
  const int argc = static_cast<int>(argv->size()) - 1;
  if (call) {
    return call(argc, argv->data());
  }
  return launchFromLaunchFile(scene.master().c_str(), properties.data(), argc, argv->data(),
                              scene.appFolderName.c_str(), updateUrl.c_str(), dynamicUpdateUrl,
                              jre.c_str(), launchClass, nullptr, false, nullptr, "/opt/wrapper",
                              false, nullptr);
}

Launched Launching::launch() {
  scene.writeLaunchFile();
  return launchAsItIs();
}

Launched Launching::launchAsItIs() {
  const test::Result child = test::runInChild([this] {
    forceSpawn = spawned;
    pauseHook = onPause;
    pauseBeforeRetry = recordPause;
    setenv("FAKE_JAVA_RECORD", record().c_str(), 1);
    setenv("FAKE_JAVA_STATUS", fakeStatus.c_str(), 1);
    std::vector<char*> argv;
    for (std::string& argument : arguments) {
      argv.push_back(argument.data());
    }
    argv.push_back(nullptr);
    beforeLaunch();
    const int result = callLaunch(&argv);
    if (launchClass == LAUNCH_APPLICATION && result == 0) {
      waitForFile(record());
    }
    test::writeFile(scene / "result", std::to_string(result));
  });
  Launched launched;
  EXPECT_FALSE(child.timedOut);
  EXPECT_EQ(0, child.signal) << child.err;
  launched.lines = test::logLinesOf(withEveryLineEnded(child.out));
  launched.returned = child.status == test::CODE_RETURNED;
  launched.result = launched.returned ? std::stoi(test::readFile(scene / "result")) : child.status;
  launched.pauses = static_cast<int>(
      std::count(launched.lines.begin(), launched.lines.end(), "paused for 500 seconds"));
  return launched;
}

void Launching::useProbe() {
  launchClass = LAUNCH_COMPATIBILITY;
  jre = test::fakeJava();
}

std::vector<std::string> Launching::startedWith() const {
  return test::endedTexts(test::readFile(record()));
}

bool Launching::wasStarted() const {
  return test::exists(record());
}

std::string Launching::writtenBytes() const {
  const std::vector<std::string> files = scene.propertiesFiles();
  EXPECT_EQ(1u, files.size());
  return files.empty() ? "" : test::readFile(files.front());
}

std::vector<std::string> Launching::written() const {
  return test::propertyTexts(writtenBytes());
}

std::vector<std::string> errorsIn(const std::vector<std::string>& lines) {
  std::vector<std::string> errors;
  for (size_t i = 0; i + 2 < lines.size(); ++i) {
    if (lines[i] == kErrorRule && lines[i + 2] == kErrorRule) {
      errors.push_back(lines[i + 1]);
      i += 2;
    }
  }
  return errors;
}

bool hasError(const std::vector<std::string>& lines, const std::string& text) {
  const std::vector<std::string> errors = errorsIn(lines);
  return std::find(errors.begin(), errors.end(), text) != errors.end();
}
