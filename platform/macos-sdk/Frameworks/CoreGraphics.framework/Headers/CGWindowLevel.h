#ifndef COREGRAPHICS_CGWINDOWLEVEL_H
#define COREGRAPHICS_CGWINDOWLEVEL_H

#include <sdk_api.h>

typedef int CGWindowLevel;

typedef enum CGWindowLevelKey : int {
  kCGFloatingWindowLevelKey SDK_API = 5,
} CGWindowLevelKey;

SDK_EXTERN CGWindowLevel CGWindowLevelForKey(CGWindowLevelKey key) SDK_API;

#endif
