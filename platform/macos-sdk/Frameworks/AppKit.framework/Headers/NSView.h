#ifndef APPKIT_NSVIEW_H
#define APPKIT_NSVIEW_H

#import <AppKit/NSResponder.h>

typedef NSUInteger NSAutoresizingMaskOptions;

enum : NSAutoresizingMaskOptions {
  NSViewWidthSizable SDK_API = 2,
  NSViewHeightSizable SDK_API = 16,
};

SDK_API @interface NSView : NSResponder
- (instancetype)initWithFrame:(NSRect)frame SDK_API;
- (NSRect)bounds SDK_API;
- (void)setAutoresizingMask:(NSAutoresizingMaskOptions)mask SDK_API;
- (void)setNeedsDisplay:(BOOL)needed SDK_API;
- (void)drawRect:(NSRect)rect SDK_IMPLEMENTED;
@end

#endif
