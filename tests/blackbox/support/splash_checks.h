#ifndef QUORVANE_TESTS_BLACKBOX_SPLASH_CHECKS_H
#define QUORVANE_TESTS_BLACKBOX_SPLASH_CHECKS_H

#include "tests/support/splash_scene.h"

// The picture that the tests show: 300 × 200 points in four quarters. Points are counted from the
// window's lower left corner.

// Expects the picture with its lower left corner at `left`, `bottom`.
void expectImageAt(const test::SplashShot& shot, int left, int bottom);

// Expects a plain colour in a rectangle.
void expectPlain(const test::SplashShot& shot, int left, int bottom, int width, int height,
                 test::Pixel colour);

// Expects the bar of a window of `width` points filled up to, and not at, the column `filled`.
void expectBar(const test::SplashShot& shot, int width, int filled);

// Expects the moving bar of a window of `width` points as the frame `frame` shows it.
void expectStripe(const test::SplashShot& shot, int width, int frame);

class SplashTest : public test::SplashScene {
 protected:
  using Steps = test::SplashScene::Steps;

  // Shows the picture with a margin, then goes on with `steps`.
  void playShown(int margin, const Steps& steps) {
    Steps all{"init", "buffer", std::to_string(margin), "configure", image_, "show"};
    all.insert(all.end(), steps.begin(), steps.end());
    play(all);
  }
};

#endif
