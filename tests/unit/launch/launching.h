#ifndef QUORVANE_TESTS_UNIT_LAUNCH_LAUNCHING_H
#define QUORVANE_TESTS_UNIT_LAUNCH_LAUNCHING_H

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "launch/launch_app.h"
#include "tests/support/files.h"
#include "tests/support/launch_scene.h"

// What a launch in a child process did.
struct Launched {
  bool returned = false;  // whether launchFromLaunchFile() came back
  int result = 0;         // what it returned, or the status with which it ended its process
  std::vector<std::string> lines;  // what it logged, without the elapsed time
  int pauses = 0;                  // how often it paused before a retry
};

// Launches the application of `scene` in a child process. The parameters have defaults that a test
// changes.
class Launching : public testing::Test {
 protected:
  test::LaunchScene scene;

  int launchClass = LAUNCH_APPLICATION;
  bool spawned = true;  // without the JNI attempt
  std::string jre = "Mac64JRE";
  std::string properties = std::string("qvstat_app_name\0Sample\0\0", 24);
  std::vector<std::string> arguments;
  std::string updateUrl = "http://127.0.0.1/updates/";
  const char* dynamicUpdateUrl = nullptr;
  std::string fakeStatus = "0";
  std::function<void()> beforeLaunch = [] {};
  std::function<void(int number)> onPause = [](int) {};
  // Where the launch gets its result from; the default is launchFromLaunchFile().
  std::function<int(int argc, char** argv)> call;

  // Writes the scene's launch file, then launches.
  Launched launch();
  // Launches with whatever is in the application folder.
  Launched launchAsItIs();

  // Starts with a compatibility class on the fake Java.
  void useProbe();

  // What the fake Java was started with, argv[0] included. The test fails when it was not.
  std::vector<std::string> startedWith() const;
  bool wasStarted() const;

  // The properties that the launch wrote, as key, value, key, value. There must be one file.
  std::string writtenBytes() const;
  std::vector<std::string> written() const;

 private:
  int callLaunch(std::vector<char*>* argv) const;
  std::string record() const { return scene / "record"; }
};

// Whether `lines` contains the lines of one logged error: a rule, `text`, a rule.
bool hasError(const std::vector<std::string>& lines, const std::string& text);

// The texts of all logged errors.
std::vector<std::string> errorsIn(const std::vector<std::string>& lines);

#endif
