#ifndef QUORVANE_TOOLS_IMAGES_PICTURE_H
#define QUORVANE_TOOLS_IMAGES_PICTURE_H

#include <optional>
#include <string>

// Pictures in memory, and as PNG files. The same picture gives the same bytes on every machine.

namespace tools {

// The longest side of a picture that is read, in pixels.
constexpr int LONGEST_SIDE = 4096;

struct Picture {
  int width = 0;
  int height = 0;
  // Rows from the top; a pixel is red, green, blue and opacity, not multiplied with each other.
  std::string pixels;
};

// Reads a PNG of any kind, to 8 bits a channel; colour profiles are ignored, the colours are taken
// for sRGB. Returns nothing if the bytes are no PNG, are damaged, or have a side that is too long.
std::optional<Picture> decodePng(const std::string& bytes);

// Returns the bytes of a PNG.
std::string encodePng(const Picture& picture);

// Returns the picture in another size, in pixels, with the light of its pixels averaged.
Picture scaled(const Picture& picture, int width, int height);

// Puts `top` over `picture`, with its left upper corner at (`x`, `y`); what lies outside is left
// out. The opacity of `picture` does not change: it is meant to be opaque.
void paint(Picture* picture, const Picture& top, int x, int y);

}  // namespace tools

#endif
