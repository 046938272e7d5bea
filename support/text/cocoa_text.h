#ifndef QUORVANE_SUPPORT_TEXT_COCOA_TEXT_H
#define QUORVANE_SUPPORT_TEXT_COCOA_TEXT_H

#import <Foundation/Foundation.h>

// Returns the C text `text`, a path as well, as an autoreleased Cocoa string: read as UTF-8, or
// byte by byte as Latin-1 where it is not UTF-8. Never nil. Any thread. Included by Objective-C++
// files only.
//
// C texts reach Cocoa this way and not through %s, which formats of Cocoa strings read in the
// system's encoding: on a Mac that is Mac Roman. A path that the file manager or an image opens is
// converted by the file manager itself.
NSString* textFromUTF8(const char* text);

#endif
