#include "platform/display.h"

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "support/owned.h"

namespace {

// A display number that no server has, and a server's abstract socket for it.
constexpr int kNumber = 41000;

Descriptor listenAs(int number) {
  Descriptor server(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  const int length =
      snprintf(address.sun_path + 1, sizeof address.sun_path - 1, "/tmp/.X11-unix/X%d", number);
  const auto size = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + length);
  EXPECT_EQ(0, bind(server.get(), reinterpret_cast<sockaddr*>(&address), size));
  EXPECT_EQ(0, listen(server.get(), 1));
  return server;
}

void useDisplay(int number) {
  setenv("DISPLAY", (":" + std::to_string(number)).c_str(), 1);
}

}  // namespace

TEST(Display, IsFoundWithoutConnectingToItsServer) {
  const int number = kNumber + getpid() % 1000;
  const Descriptor server = listenAs(number);
  useDisplay(number);
  EXPECT_TRUE(isDisplayAvailable());
  EXPECT_EQ(-1, accept(server.get(), nullptr, nullptr));
  EXPECT_EQ(EAGAIN, errno);
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
