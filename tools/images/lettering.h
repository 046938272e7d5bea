#ifndef QUORVANE_TOOLS_IMAGES_LETTERING_H
#define QUORVANE_TOOLS_IMAGES_LETTERING_H

#include <string>

#include "tools/images/picture.h"

// Short texts in pictures, in the font that is part of the packager, so that the result does not
// depend on the fonts of a machine.

namespace tools {

// Whether the text can be drawn: it is UTF-8, not empty, from a script whose letters stand side by
// side from left to right, and the font has them all.
bool isDrawable(const std::string& text);

// Draws a drawable text on one line, centred, between the columns `left` and `right`, with its base
// line at the row `baseline`. A text that is too long is drawn in smaller letters, and cut if these
// would be smaller than `smallest`. Heights are in pixels, of the font's tallest letters.
struct Line {
  std::string text;
  int left, right, baseline;
  float height, smallest;
  unsigned char red, green, blue;
};
void drawLine(Picture* picture, const Line& line);

}  // namespace tools

#endif
