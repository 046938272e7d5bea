#include "tests/support/test_home.h"

#include <signal.h>
#include <sys/types.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>

#include "tests/support/files.h"

namespace fs = std::filesystem;

namespace test {

// The toolkit's ports are local sockets, whose paths are limited to 107 characters; this is what it
// adds to the temporary folder.
static const size_t kLongestPort = sizeof "/GNUstepSecure4294967295/NSMessagePort/ports/4194304.99";

// A temporary folder inside `folder`, or one with a short path where that would be too long.
static std::string makeTemporaryFolder(const std::string& folder) {
  std::string path = folder + "/tmp";
  if (path.size() + kLongestPort > 108) {
    path = "/tmp/quorvane-XXXXXX";
    return mkdtemp(path.data());
  }
  fs::create_directories(path);
  return path;
}

TestHome::TestHome() : home_(folder_ / "home"), tmp_(makeTemporaryFolder(folder_.path())) {
  fs::create_directories(home_);
  writeDatabase({getuid(), getgid()});
}

void TestHome::writeDatabase(const Account& account) const {
  const std::string user = std::to_string(account.user);
  const std::string group = std::to_string(account.group);
  writeFile(folder_ / "passwd",
            "tester:x:" + user + ":" + group + ":Tester:" + home_ + ":/bin/sh\n");
  writeFile(folder_ / "group", "tester:x:" + group + ":\n");
}

void TestHome::becomeHomeOf(const Account& account) const {
  writeDatabase(account);
  giveTo(account, folder_.path());
  giveTo(account, tmp_);
}

static std::string nameOfProcess(const fs::path& entry) {
  char name[32] = "";
  if (FILE* file = fopen((entry / "comm").c_str(), "rb")) {
    name[fread(name, 1, sizeof name - 1, file)] = '\0';
    fclose(file);
  }
  return name;
}

// Ends what was started for this account and still runs, or what of it has the name `program`: the
// toolkit's name server, for example. It is found by the temporary folder in its environment, so
// that nobody else's is touched.
static void endProcessesOf(const std::string& tmp, const std::string& program = "") {
  const std::string wanted = "TMPDIR=" + tmp;
  std::error_code ignored;
  for (const auto& entry : fs::directory_iterator("/proc", ignored)) {
    const std::string name = entry.path().filename();
    if (name.find_first_not_of("0123456789") != std::string::npos) {
      continue;
    }
    if (!program.empty() && nameOfProcess(entry.path()) != program + "\n") {
      continue;
    }
    FILE* file = fopen((entry.path() / "environ").c_str(), "rb");
    if (file == nullptr) {
      continue;
    }
    std::string environment(65536, '\0');
    environment.resize(fread(environment.data(), 1, environment.size(), file));
    fclose(file);
    if (environment.find(wanted + '\0') != std::string::npos) {
      kill(static_cast<pid_t>(atol(name.c_str())), SIGKILL);
    }
  }
}

TestHome::~TestHome() {
  endProcessesOf(tmp_);
  std::error_code ignored;
  fs::remove_all(tmp_, ignored);
}

void TestHome::endNameServer() const {
  endProcessesOf(tmp_, "gdnc");
}

std::map<std::string, std::string> TestHome::environment() const {
  std::string preload = "libnss_wrapper.so";
  if (const char* already = getenv("LD_PRELOAD")) {
    preload = std::string(already) + ":" + preload;
  }
  return {{"HOME", home_},
          {"TMPDIR", tmp_},
          {"TEMP", tmp_},
          {"TMP", tmp_},
          {"LD_PRELOAD", preload},
          // The sanitizers refuse the way in which the wrapper would open the C library.
          {"NSS_WRAPPER_DISABLE_DEEPBIND", "1"},
          {"NSS_WRAPPER_PASSWD", folder_ / "passwd"},
          {"NSS_WRAPPER_GROUP", folder_ / "group"}};
}

}  // namespace test
