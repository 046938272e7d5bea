#ifndef QUORVANE_TESTS_SUPPORT_PICTURE_H
#define QUORVANE_TESTS_SUPPORT_PICTURE_H

#include <string>

namespace test {

// One pixel, 0xRRGGBB.
using Pixel = unsigned;

// A picture read from a PPM file, as screenshots are.
class Picture {
 public:
  // The test fails when the file is none.
  explicit Picture(const std::string& path);

  int width() const { return width_; }
  int height() const { return height_; }

  // The pixel in column `x` and row `y`, counted from the top left corner, which must lie inside.
  Pixel at(int x, int y) const;

 private:
  int width_ = 0;
  int height_ = 0;
  std::string bytes_;
};

// Writes a PNG of the given size whose quarters are red (top left), green (top right), blue (bottom
// left) and yellow (bottom right). Both sides are even.
void writeQuartersPng(const std::string& path, int width, int height);

constexpr Pixel RED = 0xff0000;
constexpr Pixel GREEN = 0x00ff00;
constexpr Pixel BLUE = 0x0000ff;
constexpr Pixel YELLOW = 0xffff00;
constexpr Pixel WHITE = 0xffffff;
constexpr Pixel BLACK = 0x000000;

}  // namespace test

#endif
