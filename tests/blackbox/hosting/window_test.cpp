// A Swing program that an installer has installed, on the screen: its window, and the menu of the
// process under the program's own name.

#include <gtest/gtest.h>

#include "tests/blackbox/hosting/hosted_program.h"
#include "tests/support/background.h"
#include "tests/support/files.h"
#include "tests/support/picture.h"
#include "tests/support/temp_folder.h"
#include "tests/support/wait.h"

namespace {

const char kJdk[] = QUORVANE_JDK;
const test::Pixel kWindowColour = 0x3366cc;

class HostedWindow : public testing::TestWithParam<Start> {
 protected:
  test::Result onDisplay(const std::vector<std::string>& words) const {
    test::Command command;
    command.arguments = words;
    command.environment = {{"DISPLAY", display_.name()}};
    return test::run(command);
  }

  // Waits until the display has a visible window of this name; returns its width, or 0.
  int widthOfWindow(const std::string& name) const {
    const test::Result found =
        onDisplay({"/usr/bin/timeout", "60", "xdotool", "search", "--sync", "--onlyvisible",
                   "--name", "^" + name + "$", "getwindowgeometry", "--shell"});
    const size_t at = found.out.find("WIDTH=");
    return at == std::string::npos ? 0 : std::stoi(found.out.substr(at + 6));
  }

  bool isShown(const std::string& name) const {
    return onDisplay({"/usr/bin/xdotool", "search", "--onlyvisible", "--name", "^" + name + "$"})
               .status == 0;
  }

  test::Pixel pixelAt(int x, int y) const {
    const std::string file = folder_ / "screen.ppm";
    const test::Result shot =
        onDisplay({"/usr/bin/import", "-silent", "-window", "root", "-depth", "8", file});
    EXPECT_EQ(0, shot.status) << shot.err;
    return test::Picture(file).at(x, y);
  }

  test::OwnDisplay display_;
  test::TempFolder folder_;
};

INSTANTIATE_TEST_SUITE_P(Of, HostedWindow, testing::ValuesIn(kInstallerStarts),
                         [](const auto& info) { return nameOf(info.param); });

}  // namespace

TEST_P(HostedWindow, IsOnTheScreenWithAMenuInTheProgramsName) {
  HostedProgram program(GetParam(), "guest.SwingWindow", kJdk);
  program.steps = {"until=" + (folder_ / "end")};
  test::Command command = program.command();
  command.environment["DISPLAY"] = display_.name();
  const test::Background installer(command);
  installer.waitForLine("[Window] up");
  EXPECT_EQ(400, widthOfWindow("Hosted window"));
  EXPECT_GT(widthOfWindow(kHostedName), 0);  // the menu
  EXPECT_FALSE(isShown(program.processName()));
  // A window is painted some time after it is there.
  EXPECT_TRUE(test::comesTrue([this] { return pixelAt(500, 350) == kWindowColour; }));
  test::writeFile(folder_ / "end", "");
  EXPECT_TRUE(test::comesTrue([&installer] {
    return installer.out().find("[Extractor] Return code for JNI launch was 0") !=
           std::string::npos;
  })) << installer.err();
}
