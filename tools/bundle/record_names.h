#ifndef QUORVANE_TOOLS_BUNDLE_RECORD_NAMES_H
#define QUORVANE_TOOLS_BUNDLE_RECORD_NAMES_H

namespace tools {

// What a component's version folder has besides the component.
constexpr char LZMA_TOOL[] = "lzma64";
constexpr char SPLASH_FILE[] = "nativesplash.png";
constexpr char VERSION_FILE[] = "version.txt";

}  // namespace tools

#endif
