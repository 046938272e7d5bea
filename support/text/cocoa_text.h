#ifndef QUORVANE_SUPPORT_TEXT_COCOA_TEXT_H
#define QUORVANE_SUPPORT_TEXT_COCOA_TEXT_H

#import <Foundation/Foundation.h>

// Returns the C text `text`, which may be a path, as an autoreleased Cocoa string: read as UTF-8,
// or byte by byte as Latin-1 if it is not UTF-8. Never nil. Any thread. Included by Objective-C++
// files only.
//
// Pass C texts to Cocoa this way and not through %s, which formats of Cocoa strings read in the
// system's encoding: on a Mac that is Mac Roman. The file manager itself converts a path that it or
// an image opens.
NSString* textFromUTF8(const char* text);

#endif
