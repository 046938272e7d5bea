#include "tools/images/lettering.h"

#include <stb_truetype.h>

#include <algorithm>
#include <cmath>

#include "tools/images/embedded.h"
#include "tools/system/utf8.h"

namespace tools {

static const stbtt_fontinfo* font() {
  static const stbtt_fontinfo found = [] {
    stbtt_fontinfo info{};
    stbtt_InitFont(&info, SPLASH_FONT, 0);
    return info;
  }();
  return &found;
}

// Latin, Greek, Cyrillic, Armenian, and punctuation. What follows Armenian runs from right to left,
// or joins its letters.
static bool isInSimpleScript(char32_t point) {
  const bool isBasic = point >= 0x20 && point < 0x590;
  const bool isCombining = point >= 0x300 && point < 0x370;
  const bool isFurther = point >= 0x1E00 && point < 0x20D0;
  const bool isInvisible = (point >= 0x7F && point < 0xA0) || (point >= 0x200B && point < 0x2010) ||
                           (point >= 0x2028 && point < 0x2030) ||
                           (point >= 0x2060 && point < 0x2070);
  return (isBasic || isFurther) && !isCombining && !isInvisible;
}

static bool hasGlyph(char32_t point) {
  return stbtt_FindGlyphIndex(font(), static_cast<int>(point)) != 0;
}

bool isDrawable(const std::string& text) {
  std::u32string points;
  return decodeUtf8(text, &points) && !points.empty() &&
         std::all_of(points.begin(), points.end(),
                     [](char32_t point) { return isInSimpleScript(point) && hasGlyph(point); });
}

// The distance from the start of the character `i` to that of the next one, in the font's units.
static int advanceOf(const std::u32string& points, size_t i) {
  int advance = 0;
  int bearing = 0;
  stbtt_GetCodepointHMetrics(font(), static_cast<int>(points[i]), &advance, &bearing);
  const int next = i + 1 < points.size() ? static_cast<int>(points[i + 1]) : 0;
  return advance +
         (next == 0 ? 0 : stbtt_GetCodepointKernAdvance(font(), static_cast<int>(points[i]), next));
}

static float widthOf(const std::u32string& points) {
  int width = 0;
  for (size_t i = 0; i < points.size(); ++i) {
    width += advanceOf(points, i);
  }
  return static_cast<float>(width);
}

// The letter as a picture of one colour, whose opacity is its shape.
static Picture pictureOf(char32_t point, float scale, float shift, const Line& line, int* x,
                         int* y) {
  Picture letter;
  unsigned char* shape = stbtt_GetCodepointBitmapSubpixel(
      font(), scale, scale, shift, 0, static_cast<int>(point), &letter.width, &letter.height, x, y);
  for (int i = 0; i < letter.width * letter.height; ++i) {
    for (const unsigned char channel : {line.red, line.green, line.blue, shape[i]}) {
      letter.pixels.push_back(static_cast<char>(channel));
    }
  }
  stbtt_FreeBitmap(shape, nullptr);
  return letter;
}

static void drawPoints(Picture* picture, const Line& line, const std::u32string& points,
                       float scale) {
  float left = static_cast<float>(line.left + line.right) / 2 - widthOf(points) * scale / 2;
  for (size_t i = 0; i < points.size(); ++i) {
    const float whole = std::floor(left);
    int x = 0;
    int y = 0;
    const Picture letter = pictureOf(points[i], scale, left - whole, line, &x, &y);
    paint(picture, letter, static_cast<int>(whole) + x, line.baseline + y);
    left += static_cast<float>(advanceOf(points, i)) * scale;
  }
}

void drawLine(Picture* picture, const Line& line) {
  std::u32string points;
  if (!decodeUtf8(line.text, &points)) {
    return;
  }
  const auto room = static_cast<float>(line.right - line.left);
  const float smallest = stbtt_ScaleForPixelHeight(font(), line.smallest);
  const float wanted = stbtt_ScaleForPixelHeight(font(), line.height);
  const float scale = std::max(smallest, std::min(wanted, room / widthOf(points)));
  if (widthOf(points) * scale > room + 1) {
    points.push_back(U'\u2026');
  }
  while (points.size() > 1 && widthOf(points) * scale > room + 1) {
    points.erase(points.size() - 2, 1);
  }
  drawPoints(picture, line, points, scale);
}

}  // namespace tools
