// URLs that arrive at an installer while the application that it has started runs in its process.

#include <gtest/gtest.h>

#include "tests/blackbox/hosting/hosted_program.h"
#include "tests/support/background.h"
#include "tests/support/files.h"
#include "tests/support/temp_folder.h"
#include "tests/support/wait.h"

class HostedUrl : public testing::TestWithParam<Start> {};

INSTANTIATE_TEST_SUITE_P(In, HostedUrl, testing::ValuesIn(kInstallerStarts),
                         [](const auto& info) { return nameOf(info.param); });

// What another program of the account asks the installer to open, while the Java program waits,
// arrives as the text `url`.
static void expectArrival(Start start, const std::string& asked, const std::string& url) {
  const test::TempFolder folder;
  const test::OwnDisplay display;
  HostedProgram program(start, "guest.Hosted");
  program.steps = {"wait=" + (folder / "end")};
  test::Command command = program.command();
  command.environment["DISPLAY"] = display.name();
  const test::Background installer(command);
  installer.waitForLine("[Hosted] waiting");
  test::Command sender;
  sender.arguments = {QUORVANE_BIN "/url_sender", program.processName(), asked};
  sender.environment = program.home().environment();
  sender.environment["DISPLAY"] = display.name();
  const test::Result sending = test::run(sender);
  EXPECT_EQ("1\n", sending.out) << sending.err;
  EXPECT_TRUE(test::comesTrue([&] {
    return installer.err().find("[URL] Converted URL to '" + url + "'") != std::string::npos;
  })) << installer.err();
  test::writeFile(folder / "end", "");
  installer.waitForLine("[Hosted] waited");
}

TEST_P(HostedUrl, ArrivesWhileTheProgramRuns) {
  expectArrival(GetParam(), "demo://open/later", "demo://open/later");
}

TEST_P(HostedUrl, OfADocumentArrivesWhileTheProgramRuns) {
  expectArrival(GetParam(), "/tmp/a Größe#1.txt", "file:///tmp/a%20Gr%C3%B6%C3%9Fe%231.txt");
}
