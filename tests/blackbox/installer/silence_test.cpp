// Runs that show nothing never touch the window system, not even to ask whether it is there; and
// what a Mac's login session without a window server does to others.

#include <gtest/gtest.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <string>

#include "tests/installer/installer.h"
#include "tests/support/background.h"
#include "tests/support/launch_scene.h"

namespace fs = std::filesystem;

namespace {

// A display that nobody serves: it only notices who connects. Its socket is where the window system
// has them, as long as this object lives.
class DeadDisplay {
 public:
  DeadDisplay() : socket_(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    mkdir("/tmp/.X11-unix", 01777);
    const int first = 20000 + getpid() % 20000;
    for (int number = first; number < first + 100; ++number) {
      if (listensAt(number)) {
        name_ = ":" + std::to_string(number);
        return;
      }
    }
    ADD_FAILURE() << "no free display number";
  }
  ~DeadDisplay() {
    close(socket_);
    if (!name_.empty()) {
      unlink(address_.sun_path);
    }
  }
  DeadDisplay(const DeadDisplay&) = delete;
  DeadDisplay& operator=(const DeadDisplay&) = delete;

  const std::string& name() const { return name_; }

  // Whether somebody has connected, or does within `seconds`.
  bool isTouched(int seconds) const {
    pollfd waiting{socket_, POLLIN, 0};
    return poll(&waiting, 1, seconds * 1000) > 0;
  }

 private:
  bool listensAt(int number) {
    address_.sun_family = AF_UNIX;
    snprintf(address_.sun_path, sizeof address_.sun_path, "/tmp/.X11-unix/X%d", number);
    return bind(socket_, reinterpret_cast<sockaddr*>(&address_), sizeof address_) == 0 &&
           listen(socket_, 10) == 0;
  }

  int socket_;
  sockaddr_un address_{};
  std::string name_;
};

// An installer that asks a Mac's login session for its window server.
class SessionOfAMac : public testing::Test {
 protected:
  test::Result run(const std::vector<std::string>& words) {
    installer_.write();
    fs::copy_file(QUORVANE_BIN "/mac_session_extractor", installer_.executable(),
                  fs::copy_options::overwrite_existing);
    return installer_.run(words);
  }

  void expectNoQuestion(const std::vector<std::string>& words) {
    const test::Result result = run(words);
    EXPECT_EQ(0, result.status) << result.out;
    EXPECT_EQ(4u, installer_.versionFolders().size());
    EXPECT_EQ(std::string::npos, result.err.find(kQuestion)) << result.err;
  }

  const std::string kQuestion = "SessionGetInfo was asked\n";
  test::Installer installer_;
};

class Silence : public testing::Test {
 protected:
  test::Command command(const std::vector<std::string>& words) const {
    installer_.write();
    test::Command command = installer_.command(words);
    command.environment["DISPLAY"] = display_.name();
    command.unset.clear();
    return command;
  }

  // Runs the installer, which has to install without touching the display.
  void expectSilence(const std::vector<std::string>& words) {
    const test::Result result = test::run(command(words));
    EXPECT_EQ(0, result.status) << result.out << result.err;
    EXPECT_EQ(4u, installer_.versionFolders().size());
    EXPECT_FALSE(display_.isTouched(0));
  }

  test::Installer installer_;
  DeadDisplay display_;
};

}  // namespace

TEST_F(Silence, OfARunThatShowsWindowsIsNone) {
  const test::Background run(command({}));
  EXPECT_TRUE(display_.isTouched(60));
}

TEST_F(Silence, IsNotAskedForByAnotherPropertyOrAnotherValue) {
  installer_.properties = {{"where", "true"}, {"show_no_ui", "false"}};
  const test::Background run(command({}));
  EXPECT_TRUE(display_.isTouched(60));
}

TEST_F(Silence, IsKeptByTheTailsWord) {
  expectSilence({"-silent"});
}

TEST_F(Silence, IsKeptByTheTailsWordBehindTheExecutable) {
  installer_.tailPlace = test::TailPlace::Executable;
  expectSilence({"one", "-silent"});
}

TEST_F(Silence, IsKeptByTheParamsFile) {
  installer_.properties = {{"where", "first"}, {"show_no_ui", "true"}};
  expectSilence({});
}

TEST_F(Silence, IsKeptByTheParamsFileInItsSecondPlace) {
  installer_.paramsPlace = test::ParamsPlace::LocVersion;
  installer_.properties = {{"show_no_ui", "true"}, {"show_no_ui", "TRUE"}};
  expectSilence({});
}

TEST_F(Silence, IsKeptByTheParamsFileInItsSecondPlaceWhereTheFirstCannotBeOpened) {
  installer_.paramsPlace = test::ParamsPlace::LocVersion;
  installer_.properties = {{"show_no_ui", "true"}};
  test::makeUnopenable(installer_.params());
  expectSilence({});
}

TEST_F(Silence, IsKeptByAnElevatedRun) {
  expectSilence({"--elevated"});
}

TEST_F(SessionOfAMac, WithoutAWindowServerEndsTheRunWithOneLineAndStatus1) {
  const test::Result result = run({});
  EXPECT_EQ(1, result.status);
  EXPECT_EQ("", result.out);
  EXPECT_EQ(kQuestion + "No window server: this login session has no graphic access.\n",
            result.err);
  EXPECT_TRUE(installer_.versionFolders().empty());
}

TEST_F(SessionOfAMac, IsNotAskedByASilentRun) {
  expectNoQuestion({"-silent"});
}

TEST_F(SessionOfAMac, IsNotAskedByAnElevatedRun) {
  expectNoQuestion({"--elevated"});
}
