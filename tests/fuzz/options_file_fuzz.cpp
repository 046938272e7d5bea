// The options file: whatever it holds, the launch that reads it comes to its end or ends the
// process with status 1. A folder stands in the place of the executable, so that nothing is
// started.

#include <cerrno>
#include <string>

#include "launch/launch_app.h"
#include "launch/retry.h"
#include "tests/fuzz/fuzz_target.h"

using namespace std::string_literals;

static const size_t kLongest = 20000;

static void layOut(const std::string& master, const std::string& options) {
  fuzz::writeFile(master + "/Quorvane-Sample-1-complete/QuorvaneLaunch",
                  "1\0Main\0\0Sample\0\0"s + "0\0"s + "0\0"s + "0\0"s + "0\0"s + "0\0"s);
  fuzz::writeFile(master + "/Quorvane-Mac64JRE-1-complete/bin/Sample/file", "");
  fuzz::writeFile(master + "/QVApps/JRE-LastSuccessfulOptions-Quorvane-Mac64JRE-1-complete",
                  options);
}

static int launch(const std::string& master) {
  char* noArguments[] = {nullptr};
  return launchFromLaunchFile(master.c_str(), "\0\0", 0, noArguments, "Quorvane-Sample-1-complete",
                              "", nullptr, "Mac64JRE", LAUNCH_APPLICATION, nullptr, false, nullptr,
                              "", false, nullptr);
}

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size > kLongest) {
    return 0;
  }
  forceSpawn = true;
  pauseBeforeRetry = [](unsigned) {};
  const std::string master = fuzz::emptyFolder();
  layOut(master, std::string(reinterpret_cast<const char*>(data), size));
  int status = 0;
  int result = 0;
  if (fuzz::endsProcess([&] { result = launch(master); }, &status)) {
    fuzz::require(status == 1, "options that do not fit end the process with status 1");
  } else {
    fuzz::require(result == EACCES, "the launch ends where the executable would be started");
  }
  return 0;
}
