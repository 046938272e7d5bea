#include "tools/images/default_images.h"

#include "tools/images/embedded.h"
#include "tools/images/lettering.h"

namespace tools {

// In points, which are pixels in an image without a resolution.
constexpr int kWidth = 480;
constexpr int kHeight = 280;
constexpr int kIconSide = 128;
constexpr int kIconTop = 44;
constexpr int kMargin = 28;
constexpr int kBaseline = 228;
constexpr float kNameHeight = 44;
constexpr float kSmallestName = 20;

Picture defaultIcon() {
  const std::string png(reinterpret_cast<const char*>(DEFAULT_ICON), DEFAULT_ICON_SIZE);
  return decodePng(png).value_or(Picture());
}

// From white at the top to a light grey at the bottom.
static Picture background() {
  constexpr int kFall[] = {26, 21, 14};  // of red, green and blue
  Picture picture{kWidth, kHeight, ""};
  for (int y = 0; y < kHeight; ++y) {
    std::string pixel;
    for (const int fall : kFall) {
      pixel.push_back(static_cast<char>(255 - fall * y / kHeight));
    }
    pixel.push_back(static_cast<char>(255));
    for (int x = 0; x < kWidth; ++x) {
      picture.pixels += pixel;
    }
  }
  return picture;
}

Picture drawSplash(const Picture& icon, const std::string& name) {
  Picture picture = background();
  const bool hasName = isDrawable(name);
  const int top = hasName ? kIconTop : (kHeight - kIconSide) / 2;
  paint(&picture, scaled(icon, kIconSide, kIconSide), (kWidth - kIconSide) / 2, top);
  if (hasName) {
    drawLine(&picture, {name, kMargin, kWidth - kMargin, kBaseline, kNameHeight, kSmallestName,
                        0x1F, 0x2A, 0x3A});
  }
  return picture;
}

}  // namespace tools
