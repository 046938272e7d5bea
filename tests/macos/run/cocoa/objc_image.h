#ifndef QUORVANE_TESTS_MACOS_RUN_COCOA_OBJC_IMAGE_H
#define QUORVANE_TESTS_MACOS_RUN_COCOA_OBJC_IMAGE_H

#include "tests/macos/run/image/image.h"

namespace macrun {

// Makes the image's Objective-C code, if it has any, known to GCC's runtime. Selectors, references
// to classes and constant strings are changed in the image itself: after it is bound, before it is
// protected. Refuses what the runner does not have. Main thread.
void registerObjc(const Image& image);

// The parts of it: the classes and categories; the constant strings, which become objects of the
// class that GNUstep has for them.
void registerClasses(const Image& image);
void convertStrings(const Image& image);

}  // namespace macrun

#endif
