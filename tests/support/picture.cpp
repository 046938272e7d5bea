#include "tests/support/picture.h"

#include <gtest/gtest.h>

#include <cstdio>

#include "tests/support/files.h"
#include "tests/support/process.h"

namespace test {

Picture::Picture(const std::string& path) {
  const std::string file = readFile(path);
  int start = 0;
  int depth = 0;
  if (sscanf(file.c_str(), "P6 %d %d %d%n", &width_, &height_, &depth, &start) != 3 ||
      depth != 255) {
    ADD_FAILURE() << path << " is no PPM picture";
    width_ = height_ = 0;
    return;
  }
  bytes_ = file.substr(static_cast<size_t>(start) + 1);
  EXPECT_EQ(bytes_.size(), static_cast<size_t>(width_) * static_cast<size_t>(height_) * 3);
}

Pixel Picture::at(int x, int y) const {
  if (x < 0 || y < 0 || x >= width_ || y >= height_) {
    ADD_FAILURE() << x << ", " << y << " lies outside the picture";
    return 0;
  }
  const size_t at =
      (static_cast<size_t>(y) * static_cast<size_t>(width_) + static_cast<size_t>(x)) * 3;
  const auto byte = [&](size_t i) { return static_cast<unsigned char>(bytes_[at + i]); };
  return static_cast<Pixel>(byte(0)) << 16 | static_cast<Pixel>(byte(1)) << 8 | byte(2);
}

void writeQuartersPng(const std::string& path, int width, int height) {
  const std::string quarter = std::to_string(width / 2) + "x" + std::to_string(height / 2);
  const Result result =
      run({{"/usr/bin/convert", "-size", quarter, "(", "xc:#ff0000", "xc:#00ff00", "+append", ")",
            "(", "xc:#0000ff", "xc:#ffff00", "+append", ")", "-append", "PNG24:" + path}});
  ASSERT_EQ(result.status, 0) << result.err;
}

}  // namespace test
