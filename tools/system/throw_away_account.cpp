#include "tools/system/throw_away_account.h"

#include <dlfcn.h>
#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>

#include "platform/environment.h"
#include "tools/system/input_error.h"
#include "tools/system/whole_file.h"

namespace fs = std::filesystem;

namespace tools {

static const char kWrapper[] = "libnss_wrapper.so";

static void requireWrapper() {
  void* wrapper = dlopen(kWrapper, RTLD_LAZY | RTLD_LOCAL);
  if (wrapper == nullptr) {
    throw InputError(
        "a temporary home needs nss_wrapper, which is not installed; install it (on Debian the "
        "package libnss-wrapper), or start the installer itself, which installs for real");
  }
  dlclose(wrapper);
}

ThrowAwayAccount::ThrowAwayAccount(const std::string& folder)
    : folder_(folder), home_(folder + "/home"), temporary_(folder + "/tmp") {
  requireWrapper();
  fs::create_directories(home_);
  fs::create_directories(temporary_);
  const std::string group = std::to_string(getgid());
  const std::string ids = std::to_string(getuid()) + ":" + group;
  writeWhole(folder_ + "/passwd", "user:x:" + ids + ":User:" + home_ + ":/bin/sh\n");
  writeWhole(folder_ + "/group", "user:x:" + group + ":\n");
}

static bool hasVariable(const fs::path& process, const std::string& variable) {
  std::ifstream in(process / "environ", std::ios::binary);
  const std::string all{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
  return ('\0' + all).find('\0' + variable + '\0') != std::string::npos;
}

// The toolkit starts a server in the background. It is recognised by its temporary folder, which no
// other process has.
ThrowAwayAccount::~ThrowAwayAccount() {
  std::error_code ignored;
  for (const auto& entry : fs::directory_iterator("/proc", ignored)) {
    const std::string name = entry.path().filename();
    if (name.find_first_not_of("0123456789") == std::string::npos &&
        hasVariable(entry.path(), "TMPDIR=" + temporary_)) {
      kill(static_cast<pid_t>(atol(name.c_str())), SIGKILL);
    }
  }
}

std::vector<std::string> ThrowAwayAccount::environment() const {
  std::map<std::string, std::string> variables;
  for (char** entry = getEnvP(); *entry != nullptr; ++entry) {
    const std::string text = *entry;
    const size_t split = std::min(text.find('='), text.size());
    variables[text.substr(0, split)] = text.substr(std::min(split + 1, text.size()));
  }
  std::string& preload = variables["LD_PRELOAD"];
  preload += (preload.empty() ? "" : ":") + std::string(kWrapper);
  variables["NSS_WRAPPER_PASSWD"] = folder_ + "/passwd";
  variables["NSS_WRAPPER_GROUP"] = folder_ + "/group";
  variables["HOME"] = home_;
  for (const char* name : {"TMPDIR", "TMP", "TEMP"}) {
    variables[name] = temporary_;
  }
  std::vector<std::string> texts;
  for (const auto& [name, value] : variables) {
    texts.push_back(name + "=" + value);
  }
  return texts;
}

}  // namespace tools
