#ifndef QUORVANE_TESTS_SUPPORT_ALERT_SCENE_H
#define QUORVANE_TESTS_SUPPORT_ALERT_SCENE_H

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/background.h"
#include "tests/support/picture.h"
#include "tests/support/process.h"
#include "tests/support/temp_folder.h"

namespace test {

// What an alert says, and where its window is, from the screen's top left.
struct ShownAlert {
  std::string message;
  std::string advice;  // with "\n" for a line end
  std::vector<std::string> buttons;
  std::string thread;  // "main" or "other"
  int x = 0, y = 0, width = 0, height = 0;
};

// An executable with the alert recorder in it, on a screen of its own, as the desktop starts it.
// One process for each scene.
class AlertScene : public testing::Test {
 protected:
  ~AlertScene() override;

  // Puts the executable "launcher" or "extractor" with the recorder into the place of a bundle's.
  static void putRecorderInto(const std::string& executable, const std::string& name);

  // Starts the command on the screen, with the environment that the desktop gives.
  void startByDesktop(Command command);
  // The same without that environment.
  void startOnScreen(Command command);

  // Waits until the alert is on the screen.
  ShownAlert waitForAlert();

  // Takes a picture of the screen, keeps it as alert-NAME.png in the build's folder "pictures", and
  // expects the alert to be in it, and nothing else.
  void expectPicture(const ShownAlert& alert, const std::string& name) const;

  // Presses a button of the alert.
  void press(const std::string& title) const;

  // Waits for the process's end.
  Result finish();

  bool wasAlertShown() const;

  TempFolder folder_;
  OwnDisplay display_;

 private:
  pid_t child_ = 0;
};

}  // namespace test

#endif
