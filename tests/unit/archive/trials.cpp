#include "tests/unit/archive/trials.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>

#include "archive/archive.h"
#include "tests/support/files.h"
#include "tests/support/temp_folder.h"
#include "tests/unit/archive/signed_archive.h"

namespace fs = std::filesystem;

namespace test {

// Extracts archives one after another in the child process and reports through a pipe.
class Trials {
 public:
  Trials(const std::vector<std::string>& archives, bool isRequired, Judge judge)
      : archives_(archives), isRequired_(isRequired), judge_(judge) {}

  std::vector<Outcome> run() {
    while (outcomes_.size() < archives_.size() && !testing::Test::HasFatalFailure()) {
      runFrom(outcomes_.size());
    }
    return outcomes_;
  }

 private:
  // Runs trials in one child until it ends; the trial in which it ended is one of them.
  void runFrom(size_t first) {
    int ends[2];
    ASSERT_EQ(0, pipe(ends));
    for (const int end : ends) {
      fcntl(end, F_SETFD, FD_CLOEXEC);
    }
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
      extractFrom(first, ends[1]);
    }
    close(ends[1]);
    char outcome = 0;
    while (read(ends[0], &outcome, 1) == 1) {
      outcomes_.push_back(static_cast<Outcome>(outcome));
    }
    close(ends[0]);
    int status = 0;
    waitpid(child, &status, 0);
    if (outcomes_.size() < archives_.size()) {
      const int end = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
      const bool isEnd = end == 1 || end == 101;
      outcomes_.push_back(isEnd ? Outcome::ended : Outcome::crashed);
    }
  }

  [[noreturn]] void extractFrom(size_t first, int report) {
    const std::string log = folder_ / "log";
    const int file = open(log.c_str(), O_RDWR | O_CREAT | O_TRUNC | O_APPEND, 0600);
    dup2(file, STDOUT_FILENO);
    dup2(open("/dev/null", O_WRONLY), STDERR_FILENO);
    const Trust trust(publicKey(), isRequired_);
    for (size_t i = first; i < archives_.size(); ++i) {
      alarm(30);
      if (ftruncate(file, 0) != 0) {
        _exit(2);
      }
      const char outcome = static_cast<char>(extract(archives_[i], log, trust));
      if (write(report, &outcome, 1) != 1) {
        _exit(2);
      }
    }
    _exit(0);
  }

  Outcome extract(const std::string& bytes, const std::string& log, Trust trust) {
    const std::string archive = folder_ / "archive.p2";
    const std::string dest = folder_ / "dest";
    fs::remove_all(dest);
    fs::create_directory(dest);
    writeFile(archive, bytes);
    extractArchive(nullptr, archive.c_str(), dest.c_str(), trust);
    const bool isVerified =
        readFile(log).find("[ExtractArchive] Archive signature verified.") != std::string::npos;
    if (exists(dest)) {
      if (judge_ != nullptr && !judge_(dest)) {
        return Outcome::altered;
      }
      return isVerified ? Outcome::verified : Outcome::accepted;
    }
    return isVerified ? Outcome::crashed : Outcome::rejected;
  }

  const std::vector<std::string>& archives_;
  const bool isRequired_;
  const Judge judge_;
  TempFolder folder_;
  std::vector<Outcome> outcomes_;
};

std::vector<Outcome> tryArchives(const std::vector<std::string>& archives, bool isRequired,
                                 Judge judge) {
  return Trials(archives, isRequired, judge).run();
}

}  // namespace test
