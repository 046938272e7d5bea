#ifndef QUORVANE_SUPPORT_SPLASH_SPLASH_IMAGES_H
#define QUORVANE_SUPPORT_SPLASH_SPLASH_IMAGES_H

#import <Cocoa/Cocoa.h>

// Returns a new image, owned by the caller, of `width` × `height` points with one pixel per point.
// `bytes` has `height` rows, top row first, each of `width` pixels of 3 bytes in blue, green, red
// order, padded to a multiple of 4 bytes; they are copied. Null if there is no memory. Main thread.
NSImage* loadImageFromByteArray(const unsigned char* bytes, int width, int height);

#endif
