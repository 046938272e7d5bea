#ifndef QUORVANE_TOOLS_IMAGES_ICNS_H
#define QUORVANE_TOOLS_IMAGES_ICNS_H

#include <optional>
#include <string>

#include "tools/images/picture.h"

// Icon files of macOS: one picture in several sizes.

namespace tools {

// The width and height, in pixels, of the picture that an icon is made from.
constexpr int ICON_SIDE = 1024;

// Returns the bytes of an .icns file with the picture, which has ICON_SIDE pixels a side, in the
// sizes from 16 × 16 points at two pixels a point to 512 × 512 points at two, each as a PNG.
std::string encodeIcns(const Picture& picture);

// Returns what is wrong with the bytes of an .icns file, or nothing. The pictures themselves are
// not read.
std::string faultOfIcns(const std::string& bytes);

// Returns the largest picture that is a PNG in a sound .icns file; nothing if there is none.
std::optional<Picture> largestIn(const std::string& icns);

}  // namespace tools

#endif
