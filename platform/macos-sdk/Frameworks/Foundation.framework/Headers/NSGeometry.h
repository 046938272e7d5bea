#ifndef FOUNDATION_NSGEOMETRY_H
#define FOUNDATION_NSGEOMETRY_H

#include <CoreGraphics/CGGeometry.h>

#include <sdk_api.h>

typedef CGPoint NSPoint;
typedef CGSize NSSize;
typedef CGRect NSRect;

SDK_EXTERN const NSSize NSZeroSize SDK_API;
SDK_EXTERN const NSRect NSZeroRect SDK_API;

// The marker is a declaration of its own, because one at the end of a body would mark nothing.
static inline NSPoint NSMakePoint(CGFloat x, CGFloat y) SDK_API;
static inline NSSize NSMakeSize(CGFloat width, CGFloat height) SDK_API;
static inline NSRect NSMakeRect(CGFloat x, CGFloat y, CGFloat width, CGFloat height) SDK_API;

static inline NSPoint NSMakePoint(CGFloat x, CGFloat y) {
  NSPoint point = {x, y};
  return point;
}

static inline NSSize NSMakeSize(CGFloat width, CGFloat height) {
  NSSize size = {width, height};
  return size;
}

static inline NSRect NSMakeRect(CGFloat x, CGFloat y, CGFloat width, CGFloat height) {
  NSRect rect = {{x, y}, {width, height}};
  return rect;
}

#endif
