#include "tools/verify/launch_check.h"

#include "launch/launch.h"

namespace tools {

// The executable, -cp and its value, the main class, the properties file.
static const size_t kOwnWords = 5;

static size_t wordsOf(const LaunchFile& file) {
  const size_t heapOptions =
      (file.maximumHeapMegabytes > 0 ? 1u : 0u) + (file.initialHeapMegabytes > 0 ? 1u : 0u);
  return kOwnWords + heapOptions + file.arguments.size();
}

std::vector<std::string> faultsOfLaunch(const LaunchFile& file) {
  std::vector<std::string> faults;
  if (wordsOf(file) > COMMAND_LINE_ROOM) {
    faults.push_back("its launch file has " + std::to_string(file.arguments.size()) +
                     " arguments, which makes a command line of " + std::to_string(wordsOf(file)) +
                     " arguments; it has room for " + std::to_string(COMMAND_LINE_ROOM));
  }
  size_t length = 0;
  for (const std::string& entry : file.classPath) {
    length += entry.size() + 2;  // after the folder's '/', and before a ':' or the end
    if (entry.size() + 1 >= CLASS_PATH_ENTRY_SIZE) {
      faults.push_back("its launch file has a class path entry of " + std::to_string(entry.size()) +
                       " bytes, which does not fit " + std::to_string(CLASS_PATH_ENTRY_SIZE));
    }
    if (entry.find(':') != std::string::npos) {
      faults.push_back("its launch file has " + entry +
                       " in the class path, where ':' separates entries");
    }
  }
  if (length > CLASS_PATH_SIZE) {
    faults.push_back("its launch file has a class path of more than the " +
                     std::to_string(CLASS_PATH_SIZE) + " bytes that fit");
  }
  return faults;
}

}  // namespace tools
