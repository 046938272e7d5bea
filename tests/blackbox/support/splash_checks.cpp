#include "tests/blackbox/support/splash_checks.h"

#include "support/splash/splash_pixels.h"

using test::Pixel;
using test::SplashShot;

static const int kBar = 18;  // the bar's height

// The pixel of a bar tile in column `x` and row `y` from the bottom.
static Pixel tilePixel(const unsigned char* tile, int width, int x, int y) {
  const int rowBytes = (width * 3 + 3) / 4 * 4;
  const unsigned char* pixel = tile + (kBar - 1 - y) * rowBytes + x * 3;
  return static_cast<Pixel>(pixel[2]) << 16 | static_cast<Pixel>(pixel[1]) << 8 | pixel[0];
}

static Pixel fillPixel(int y) {
  return tilePixel(progress_lightblue, 4, 0, y);
}

static Pixel trackPixel(int y) {
  return tilePixel(track, 4, 0, y);
}

static Pixel stripePixel(int frame, int x, int y) {
  return tilePixel(progress_lighblue_indefinite, 10, (x - frame + 20) % 10, y);
}

// What the quarters picture of 300 × 200 points shows, from the bottom.
static Pixel quarterPixel(int x, int y) {
  return y < 100 ? (x < 150 ? test::BLUE : test::YELLOW) : (x < 150 ? test::RED : test::GREEN);
}

void expectImageAt(const SplashShot& shot, int left, int bottom) {
  int wrong = 0;
  for (int y = 0; y < 200; ++y) {
    for (int x = 0; x < 300; ++x) {
      wrong += shot.at(left + x, bottom + y) != quarterPixel(x, y);
    }
  }
  EXPECT_EQ(wrong, 0);
}

void expectPlain(const SplashShot& shot, int left, int bottom, int width, int height,
                 Pixel colour) {
  int wrong = 0;
  for (int y = bottom; y < bottom + height; ++y) {
    for (int x = left; x < left + width; ++x) {
      wrong += shot.at(x, y) != colour;
    }
  }
  EXPECT_EQ(wrong, 0) << left << "," << bottom << " " << width << "x" << height;
}

void expectBar(const SplashShot& shot, int width, int filled) {
  int wrong = 0;
  for (int y = 0; y < kBar; ++y) {
    for (int x = 0; x < width; ++x) {
      wrong += shot.at(x, y) != (x < filled ? fillPixel(y) : trackPixel(y));
    }
  }
  EXPECT_EQ(wrong, 0);
}

void expectStripe(const SplashShot& shot, int width, int frame) {
  int wrong = 0;
  for (int y = 0; y < kBar; ++y) {
    for (int x = 0; x < width; ++x) {
      wrong += shot.at(x, y) != stripePixel(frame, x, y);
    }
  }
  EXPECT_EQ(wrong, 0) << "frame " << frame;
}
