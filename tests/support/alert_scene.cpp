#include "tests/support/alert_scene.h"

#include <signal.h>

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <sstream>
#include <thread>

#include "tests/support/files.h"

namespace fs = std::filesystem;

namespace test {

static const int kScreenHeight = 800;
static const Pixel kPanel = 0xaaaaaa;

AlertScene::~AlertScene() {
  if (child_ != 0) {
    finish();
  }
}

void AlertScene::putRecorderInto(const std::string& executable, const std::string& name) {
  fs::remove(executable);
  fs::copy_file(QUORVANE_BIN "/recorded_" + name, executable);
}

void AlertScene::startOnScreen(Command command) {
  command.environment["DISPLAY"] = display_.name();
  command.environment["QUORVANE_ALERTS"] = folder_.path();
  child_ = start(command, folder_ / "out", folder_ / "err");
}

void AlertScene::startByDesktop(Command command) {
  command.environment["DESKTOP_STARTUP_ID"] = "files-1-host_TIME5";
  startOnScreen(command);
}

ShownAlert AlertScene::waitForAlert() {
  const std::string shown = folder_ / "shown";
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(60);
  while (!exists(shown) && std::chrono::steady_clock::now() < end) {
    std::this_thread::sleep_for(std::chrono::milliseconds(60));
  }
  ShownAlert alert;
  if (!exists(shown)) {
    ADD_FAILURE() << "no alert; standard output:\n"
                  << readFile(folder_ / "out") << readFile(folder_ / "err");
    return alert;
  }
  std::istringstream text(readFile(folder_ / "alert"));
  std::getline(text, alert.message);
  std::getline(text, alert.advice);
  std::string buttons;
  std::getline(text, buttons);
  std::getline(text, alert.thread);
  std::istringstream titles(buttons);
  for (std::string title; std::getline(titles, title, '|');) {
    alert.buttons.push_back(title);
  }
  int bottom = 0;
  const std::string frame = readFile(shown);
  EXPECT_EQ(4,
            sscanf(frame.c_str(), "%d %d %d %d", &alert.x, &bottom, &alert.width, &alert.height));
  alert.y = kScreenHeight - bottom - alert.height;
  return alert;
}

static bool isInside(const ShownAlert& alert, int x, int y) {
  return x >= alert.x && x < alert.x + alert.width && y >= alert.y && y < alert.y + alert.height;
}

void AlertScene::expectPicture(const ShownAlert& alert, const std::string& name) const {
  const std::string ppm = folder_ / "screen.ppm";
  ASSERT_EQ(
      0,
      run({{"/usr/bin/import", "-display", display_.name(), "-window", "root", "-depth", "8", ppm}})
          .status);
  fs::create_directories(QUORVANE_PICTURES);
  const std::string png = std::string(QUORVANE_PICTURES) + "/alert-" + name + ".png";
  ASSERT_EQ(0, run({{"/usr/bin/convert", ppm, png}}).status);
  const Picture picture(ppm);
  int panel = 0;
  int text = 0;
  int outside = 0;
  for (int y = 0; y < picture.height(); ++y) {
    for (int x = 0; x < picture.width(); ++x) {
      const Pixel pixel = picture.at(x, y);
      const bool inside = isInside(alert, x, y);
      panel += inside && pixel == kPanel;
      text += inside && pixel == BLACK;
      // The toolkit's menu of the application lies in the screen's upper left corner.
      outside += !inside && pixel != BLACK && y > 200;
    }
  }
  const int area = alert.width * alert.height;
  EXPECT_GT(panel, area / 2);
  EXPECT_GT(text, area / 100);
  // The splash would be seen behind it, and in front of it.
  EXPECT_EQ(0, outside);
}

void AlertScene::press(const std::string& title) const {
  writeFile(folder_ / "press.part", title);
  fs::rename(folder_ / "press.part", folder_ / "press");
}

Result AlertScene::finish() {
  Result result = waitForChild(child_, 60);
  child_ = 0;
  result.out = readFile(folder_ / "out");
  result.err = readFile(folder_ / "err");
  return result;
}

bool AlertScene::wasAlertShown() const {
  return exists(folder_ / "alert");
}

}  // namespace test
