#ifndef QUORVANE_TESTS_SUPPORT_SPLASH_SCENE_H
#define QUORVANE_TESTS_SUPPORT_SPLASH_SCENE_H

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "tests/support/background.h"
#include "tests/support/picture.h"
#include "tests/support/test_home.h"

namespace test {

// What the splash driver said about the splash at one moment: its "state" line.
struct SplashState {
  std::map<std::string, int> values;  // percent, frame, max, buffer, visible, level, threads, ...
  int imageWidth = 0, imageHeight = 0;
  double x = 0, y = 0, width = 0, height = 0;  // the window's frame, from the bottom left corner
  int viewWidth = 0, viewHeight = 0;

  int operator[](const std::string& name) const { return values.at(name); }
};

// A screenshot and where the window lay in it; pixels are counted from the window's bottom left
// corner.
class SplashShot {
 public:
  SplashShot(const std::string& path, const SplashState& state);
  Pixel at(int x, int y) const;

 private:
  Picture picture_;
  int left_;
  int bottom_;
};

// Runs the splash driver on a screen of its own, so that the pixels are the splash's whatever else
// runs, with or without a DISPLAY.
class SplashScene : public testing::Test {
 protected:
  void SetUp() override;

  using Steps = std::vector<std::string>;

  // Runs the steps; the driver must end well. What it said stands in `out_` and `err_` afterwards.
  // After a step "shoot" the window can be looked at in the next of `shots_`, after a step "state"
  // in the next of `states_`.
  void play(const Steps& steps);
  void playOn(const std::string& display, const Steps& steps);

  // The lines on standard output, without the driver's own.
  std::vector<std::string> lines() const;

  std::string image(int width, int height);

  TempFolder folder_;
  std::string image_;  // a picture of 300 × 200 points in four quarters
  std::string out_;
  std::string err_;
  std::vector<SplashState> states_;
  std::vector<SplashShot> shots_;

 private:
  TestHome home_;
};

}  // namespace test

#endif
