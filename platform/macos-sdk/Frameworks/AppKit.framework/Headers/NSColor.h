#ifndef APPKIT_NSCOLOR_H
#define APPKIT_NSCOLOR_H

#import <Foundation/Foundation.h>

SDK_API @interface NSColor : NSObject
+ (NSColor*)whiteColor SDK_API;
- (void)set SDK_API;
@end

#endif
