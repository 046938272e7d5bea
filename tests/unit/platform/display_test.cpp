#include "platform/display.h"

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "support/owned.h"

namespace {

// A display number that no server has.
constexpr int kNumber = 41000;

// The socket of a server for a display, as a file that is there as long as this object lives.
class ServerSocket {
 public:
  explicit ServerSocket(int number)
      : server_(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0)) {
    address_.sun_family = AF_UNIX;
    snprintf(address_.sun_path, sizeof address_.sun_path, "/tmp/.X11-unix/X%d", number);
    mkdir("/tmp/.X11-unix", 01777);
    unlink(address_.sun_path);
    EXPECT_EQ(0, bind(server_.get(), reinterpret_cast<sockaddr*>(&address_), sizeof address_));
  }
  ~ServerSocket() { unlink(address_.sun_path); }
  ServerSocket(const ServerSocket&) = delete;
  ServerSocket& operator=(const ServerSocket&) = delete;

  int get() const { return server_.get(); }

 private:
  Descriptor server_;
  sockaddr_un address_{};
};

void useDisplay(int number) {
  setenv("DISPLAY", (":" + std::to_string(number)).c_str(), 1);
}

}  // namespace

TEST(Display, IsFoundWithoutConnectingToItsServer) {
  const int number = kNumber + getpid() % 1000;
  const ServerSocket server(number);
  ASSERT_EQ(0, listen(server.get(), 1));
  useDisplay(number);
  EXPECT_TRUE(isDisplayAvailable());
  EXPECT_EQ(-1, accept(server.get(), nullptr, nullptr));
  EXPECT_EQ(EAGAIN, errno);
}

TEST(Display, WhoseServerLeftItsSocketBehindIsLeftToTheToolkit) {
  const int number = kNumber + 1000 + getpid() % 1000;
  const ServerSocket server(number);
  useDisplay(number);
  EXPECT_TRUE(isDisplayAvailable());
}

TEST(Display, WithoutAServerOrANameIsNotAvailable) {
  useDisplay(kNumber - 1);
  EXPECT_FALSE(isDisplayAvailable());
  setenv("DISPLAY", "", 1);
  EXPECT_FALSE(isDisplayAvailable());
  unsetenv("DISPLAY");
  EXPECT_FALSE(isDisplayAvailable());
}

TEST(Display, OnAnotherHostIsLeftToTheToolkit) {
  setenv("DISPLAY", "elsewhere:0", 1);
  EXPECT_TRUE(isDisplayAvailable());
}
