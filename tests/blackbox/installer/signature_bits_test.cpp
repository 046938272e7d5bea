// Every single-bit flip and every truncation of a signed archive of about 4 KiB, each in an
// installation of its own: with "require_signature" it is installed and started only where the
// signature record still says the same, and nothing else of it ever is; without it, what counts as
// unsigned is counted. The installations run in forks of this process, which
// saves the start of a program for each; an executable that is not of this build is started each
// time.
//
// QUORVANE_SIGNATURE_BITS is the number of flips and of truncations to try, spread over the
// archive; "all" tries each one.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <pwd.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <string>
#include <thread>
#include <vector>

#include "extractor/extract_wrapper_tail.h"
#include "launcher/shell/application.h"
#include "tests/installer/installer.h"
#include "tests/support/capture.h"
#include "tests/support/files.h"
#include "tests/support/product_system.h"
#include "tests/support/signature_record.h"

namespace fs = std::filesystem;
using test::fileRecord;
using test::Installer;

// The account whose home the installations go into.
static std::string homeOfTest;

extern "C" passwd* getpwuid(uid_t) {
  static passwd entry{};
  entry.pw_dir = homeOfTest.data();
  return homeOfTest.empty() ? nullptr : &entry;
}

namespace {

enum class Component { Updater, Runtime, Application };

std::ostream& operator<<(std::ostream& out, Component component) {
  static const char* const kNames[] = {"Updater", "Runtime", "Application"};
  return out << kNames[static_cast<int>(component)];
}

// How many runs came to which end.
struct Counts {
  int runs = 0;
  int refused = 0;
  int installed = 0;
  int killed = 0;
  int started = 0;
};

class SignatureBits : public testing::TestWithParam<Component> {
 protected:
  SignatureBits() {
    homeOfTest = installer_.home.path();
    // What an installer leaves behind becomes this process's child, which can wait for its end.
    EXPECT_EQ(0, prctl(PR_SET_CHILD_SUBREAPER, 1));
    fs::create_directories(installer_.home.applicationSupport());
    installer_.tail.publicKey = key_.publicKeyHex();
    const std::string padding(3000, 'p');
    archives_ = {
        {Component::Updater, Installer::updaterRecords()},
        {Component::Runtime, fileRecord("Contents/Home/bin/java", javaThatNotesItsStart()) +
                                 fileRecord("Contents/Home/bin/unpack200", "#!/bin/sh\n")},
        {Component::Application, Installer::applicationRecords("3")}};
    archives_[GetParam()] += fileRecord("padding", padding);
    for (auto& [component, records] : archives_) {
      records = test::signedBy(key_, records);
    }
    installer_.updater[0] = fileRecord("lzma64", "no tool is needed");
    writeInstaller();
    setUpToolkit();
  }

  ~SignatureBits() override { drainAutoreleasePool(pool_); }

  const std::string& archive() { return archives_[GetParam()]; }

  void requireSignatures() {
    installer_.properties = {{"require_signature", "true"}};
    writeInstaller();
  }

  // Installs with `bytes` in place of the component's archive; counts how that ended.
  void tryArchive(const std::string& bytes, Counts* counts) {
    std::map<Component, std::string> carried = archives_;
    carried[GetParam()] = bytes;
    installer_.updater[1] = fileRecord("updater.p2", carried[Component::Updater]);
    installer_.runtime = fileRecord("runtime.p2", carried[Component::Runtime]);
    installer_.application[0] = fileRecord("application.p2", carried[Component::Application]);
    test::writeFile(installer_.resources() + "/Tail", installer_.tailRecord());
    fs::remove_all(installer_.master());
    fs::remove(installer_ / "started");
    count(runInstaller(), counts);
  }

  // Runs `change` for positions of `size`, all of them or as many as are asked for.
  template <typename Change>
  Counts tryAll(size_t size, Change change) {
    const char* wanted = getenv("QUORVANE_SIGNATURE_BITS");
    size_t most = wanted == nullptr ? 12 : strtoull(wanted, nullptr, 10);
    if (most == 0 || most > size) {
      most = size;  // "all"
    }
    Counts counts;
    for (size_t i = 0; i < most && !HasFailure(); ++i) {
      const size_t at = i * size / most;
      SCOPED_TRACE("position " + std::to_string(at));
      const std::string bytes = change(at);
      tryArchive(bytes, &counts);
      if (!accepted_) {
        expectInstalledIf(test::saysTheSame(bytes, archive()));
      }
    }
    return counts;
  }

  Counts flipEveryBit() {
    return tryAll(archive().size() * 8, [this](size_t at) {
      std::string bytes = archive();
      bytes[at / 8] = static_cast<char>(bytes[at / 8] ^ (1 << at % 8));
      return bytes;
    });
  }

  Counts cutEverywhere() {
    return tryAll(archive().size(), [this](size_t at) { return archive().substr(0, at); });
  }

  void report(const char* what, const Counts& counts) {
    printf("%s of %zu bytes: %d runs, %d refused, %d installed, %d started, %d killed\n", what,
           archive().size(), counts.runs, counts.refused, counts.installed, counts.started,
           counts.killed);
  }

  // Refused, nothing of the archive is there and nothing ran; otherwise exactly what was signed is.
  void expectInstalledIf(bool isAllowed) {
    EXPECT_EQ(isAllowed, mainClassStarted());
    if (!isAllowed) {
      EXPECT_FALSE(test::exists(folder()));
      EXPECT_FALSE(test::exists(folder() + ".plugin"));
      return;
    }
    const std::string bundle = folder() + ".plugin";
    const std::string holder = GetParam() == Component::Runtime ? bundle : folder();
    EXPECT_EQ(std::string(3000, 'p'), test::readFile(holder + "/padding"));
  }

  bool accepted_ = false;  // whether an altered archive may be installed
  Installer installer_;

 private:
  std::string folder() const {
    switch (GetParam()) {
      case Component::Updater:
        return installer_.master("Quorvane-Quorvane-5-complete");
      case Component::Runtime:
        return installer_.runtimeFolder();
      default:
        return installer_.master("Quorvane-Demo-3-complete");
    }
  }

  // The runtime holds no JVM library, so that the launch runs its java.
  std::string javaThatNotesItsStart() const {
    return "#!/bin/sh\ncase \"$*\" in *updater.Main*) : > '" + (installer_ / "started") +
           "' ;; esac\n";
  }

  bool mainClassStarted() const { return test::exists(installer_ / "started"); }

  // The forks are the installer: its file is only searched for a Tail record.
  void writeInstaller() {
    installer_.write();
    if (!test::productIsElsewhere()) {
      test::writeFile(installer_.executable(), "no program");
    }
  }

  // What the toolkit sets up once in a process is not set up in every fork again.
  void setUpToolkit() {
    std::string path = installer_.executable();
    char* words[] = {path.data(), nullptr};
    prepareApplication(words);
    pool_ = createAutoreleasePool();
  }

  // Runs the executable where it is not of this build, and returns its status.
  int runExecutable() {
    test::Command command = installer_.command({"-silent"});
    const pid_t child = test::start(command, "/dev/null", "/dev/null");
    int status = 0;
    waitpid(child, &status, 0);
    installer_.home.endNameServer();
    waitForLeftChildren();
    return status;
  }

  // Forks a process that does all that the extractor's main function does, and returns its status.
  int runInstaller() {
    if (test::productIsElsewhere()) {
      return runExecutable();
    }
    const pid_t child = fork();
    if (child == 0) {
      const int nothing = open("/dev/null", O_RDWR);
      dup2(nothing, STDOUT_FILENO);
      dup2(nothing, STDERR_FILENO);
      std::string path = installer_.executable();
      std::string silent = "-silent";
      char* words[] = {path.data(), silent.data(), nullptr};
      prepareApplication(words);
      createAutoreleasePool();
      extractWrapperTail(words[0], 2, words, 0, nullptr, false);
    }
    int status = 0;
    waitpid(child, &status, 0);
    waitForLeftChildren();
    return status;
  }

  // The java that a launch spawns outlives the installer.
  static void waitForLeftChildren() {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    pid_t gone = 0;
    while (gone >= 0 && std::chrono::steady_clock::now() < end) {
      gone = waitpid(-1, nullptr, WNOHANG);
      if (gone == 0) {
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
      }
    }
    EXPECT_TRUE(gone < 0 && errno == ECHILD) << "something that was started does not end";
  }

  void count(int status, Counts* counts) const {
    ++counts->runs;
    counts->started += mainClassStarted() ? 1 : 0;
    if (WIFSIGNALED(status)) {
      ++counts->killed;
    } else if (WEXITSTATUS(status) == 0) {
      ++counts->installed;
    } else {
      ++counts->refused;
    }
  }

  tools::SigningKey key_ = test::testKey("first");
  std::map<Component, std::string> archives_;
  void* pool_ = nullptr;
};

}  // namespace

TEST_P(SignatureBits, OfAnUntouchedArchiveAreAccepted) {
  requireSignatures();
  Counts counts;
  tryArchive(archive(), &counts);
  EXPECT_EQ(1, counts.installed);
  EXPECT_EQ(1, counts.started);
}

TEST_P(SignatureBits, FlippedOneByOneAreInstalledWhereSignaturesAreRequiredOnlyIfTheySayTheSame) {
  requireSignatures();
  const Counts counts = flipEveryBit();
  report("flips, signatures required", counts);
  EXPECT_EQ(0, counts.killed);
  EXPECT_EQ(counts.runs - counts.refused, counts.started);
}

TEST_P(SignatureBits, SpelledAsAnotherPackagerDoesAreInstalledWhereSignaturesAreRequired) {
  requireSignatures();
  std::string bytes = archive();
  const size_t type = test::signatureRecordOf(bytes);
  const size_t hex = bytes.rfind('\0', bytes.size() - 2) + 1;
  ASSERT_EQ('0', bytes[type]);
  bytes[type] = '3';
  for (size_t i = hex; i < bytes.size(); ++i) {
    bytes[i] = static_cast<char>(toupper(bytes[i]));
  }
  const size_t length = type + sizeof "0" + sizeof "qvArcSpBlock_DigitalSignature1";
  bytes.replace(length, bytes.find('\0', length) - length, "00");
  ASSERT_TRUE(test::saysTheSame(bytes, archive()));
  Counts counts;
  tryArchive(bytes, &counts);
  EXPECT_EQ(1, counts.installed);
  expectInstalledIf(true);
}

TEST_P(SignatureBits, CutAnywhereAreNeverInstalledWhereSignaturesAreRequired) {
  requireSignatures();
  const Counts counts = cutEverywhere();
  report("truncations", counts);
  EXPECT_EQ(counts.runs, counts.refused);
}

TEST_P(SignatureBits, FlippedWithoutTheRequirementAreCounted) {
  accepted_ = true;
  const Counts counts = flipEveryBit();
  report("flips, unsigned accepted", counts);
  EXPECT_EQ(0, counts.killed);
  EXPECT_EQ(counts.installed, counts.started);
  EXPECT_GT(counts.refused, counts.installed);
}

TEST_P(SignatureBits, CutWithoutTheRequirementAreCounted) {
  accepted_ = true;
  const Counts counts = cutEverywhere();
  report("truncations, unsigned accepted", counts);
  EXPECT_EQ(0, counts.killed);
  EXPECT_EQ(counts.installed, counts.started);
  EXPECT_GT(counts.refused, counts.installed);
}

INSTANTIATE_TEST_SUITE_P(Of, SignatureBits,
                         testing::Values(Component::Updater, Component::Runtime,
                                         Component::Application),
                         testing::PrintToStringParamName());
