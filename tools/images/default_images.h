#ifndef QUORVANE_TOOLS_IMAGES_DEFAULT_IMAGES_H
#define QUORVANE_TOOLS_IMAGES_DEFAULT_IMAGES_H

#include <string>

#include "tools/images/picture.h"

// What an application without pictures of its own gets.

namespace tools {

// Returns the icon, with ICON_SIDE pixels a side.
Picture defaultIcon();

// Returns the splash of the application `name`, a UTF-8 text, with the square picture `icon`. The
// installer draws its bar below the image.
Picture drawSplash(const Picture& icon, const std::string& name);

}  // namespace tools

#endif
