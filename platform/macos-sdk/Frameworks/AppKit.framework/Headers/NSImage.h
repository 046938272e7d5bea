#ifndef APPKIT_NSIMAGE_H
#define APPKIT_NSIMAGE_H

#import <AppKit/NSGraphics.h>

@class NSImageRep;

SDK_API @interface NSImage : NSObject
- (instancetype)initWithSize:(NSSize)size SDK_API;
- (instancetype)initWithContentsOfFile:(NSString*)path SDK_API;
- (NSSize)size SDK_API;
- (void)addRepresentation:(NSImageRep*)representation SDK_API;
- (void)drawAtPoint:(NSPoint)point
           fromRect:(NSRect)source
          operation:(NSCompositingOperation)operation
           fraction:(CGFloat)opacity SDK_API;
@end

#endif
