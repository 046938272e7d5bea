// The launch file: whatever it holds, a launch that starts nothing comes to its end or ends the
// process with status 1, and properties that were written are pairs.

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "launch/launch_app.h"
#include "launch/launch_file.h"
#include "tests/fuzz/fuzz_target.h"

namespace fs = std::filesystem;

static const size_t kLongest = 20000;
static const int kClassThatStartsNothing = 2;
static const char kApplication[] = "Quorvane-Sample-1-complete";

static int launch(const std::string& master) {
  char word[] = "word";
  char* arguments[] = {word, nullptr};
  return launchFromLaunchFile(master.c_str(), "qvstat_a\0b\0", 1, arguments, kApplication, "D",
                              "http://127.0.0.1/", "Mac64JRE", kClassThatStartsNothing, nullptr,
                              false, nullptr, "from", false, nullptr);
}

static void checkProperties(const fs::path& file) {
  std::ifstream stream(file, std::ios::binary);
  const std::string bytes{std::istreambuf_iterator<char>(stream), {}};
  fuzz::require(!bytes.empty() && bytes.back() != '\0', "the last value is not ended");
  fuzz::require(std::count(bytes.begin(), bytes.end(), '\0') % 2 == 1, "keys and values are pairs");
}

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size > kLongest) {
    return 0;
  }
  const std::string master = fuzz::emptyFolder();
  const fs::path folder = fs::path(master) / kApplication;
  fs::create_directory(folder);
  std::ofstream(folder / "QuorvaneLaunch", std::ios::binary)
      .write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
  const bool hasFlaw = flawOfLaunchFile((folder / LAUNCH_FILE_NAME).c_str()) != nullptr;
  fuzz::require(hasFlaw || size > 10,
                "a file without a flaw has the ten fields that every launch reads");
  int status = 0;
  int result = 0;
  if (fuzz::endsProcess([&] { result = launch(master); }, &status)) {
    fuzz::require(status == 1, "a launch file that does not fit ends the process with status 1");
    return 0;
  }
  fuzz::require(result == -1, "a launch of that class returns -1");
  for (const auto& entry : fs::directory_iterator(folder)) {
    if (entry.path().filename() != "QuorvaneLaunch") {
      checkProperties(entry.path());
    }
  }
  return 0;
}
