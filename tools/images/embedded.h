#ifndef QUORVANE_TOOLS_IMAGES_EMBEDDED_H
#define QUORVANE_TOOLS_IMAGES_EMBEDDED_H

#include <cstddef>

// Files that the build makes part of the packager (cmake/EmbedFile.cmake).

namespace tools {

extern const unsigned char SPLASH_FONT[];  // a TrueType font
extern const size_t SPLASH_FONT_SIZE;
extern const unsigned char DEFAULT_ICON[];  // tools/images/default_icon.png
extern const size_t DEFAULT_ICON_SIZE;

}  // namespace tools

#endif
