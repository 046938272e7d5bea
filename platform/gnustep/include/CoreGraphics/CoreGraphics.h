#ifndef QUORVANE_PLATFORM_GNUSTEP_COREGRAPHICS_H
#define QUORVANE_PLATFORM_GNUSTEP_COREGRAPHICS_H

// The part of CoreGraphics that this system uses, for GNUstep, which has none.

#include <cstdint>

typedef int32_t CGWindowLevel;
typedef int32_t CGWindowLevelKey;

enum { kCGNormalWindowLevelKey = 4, kCGFloatingWindowLevelKey = 5 };

// Returns the toolkit's level for `key`; keys other than the two above count as normal.
CGWindowLevel CGWindowLevelForKey(CGWindowLevelKey key);

#endif
