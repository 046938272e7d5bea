#ifndef APPKIT_NSWINDOW_H
#define APPKIT_NSWINDOW_H

#import <AppKit/NSGraphics.h>
#import <AppKit/NSResponder.h>

@class NSColor;
@class NSView;

typedef NSUInteger NSWindowStyleMask;
typedef NSInteger NSWindowLevel;

SDK_API @interface NSWindow : NSResponder
- (instancetype)initWithContentRect:(NSRect)rect
                          styleMask:(NSWindowStyleMask)style
                            backing:(NSBackingStoreType)backing
                              defer:(BOOL)defer SDK_API;
- (NSRect)frame SDK_API;
- (void)center SDK_API;
- (void)close SDK_API;
- (void)displayIfNeeded SDK_API;
- (void)makeKeyAndOrderFront:(id)sender SDK_API;
- (void)orderOut:(id)sender SDK_API;
- (void)setBackgroundColor:(NSColor*)color SDK_API;
- (void)setContentView:(NSView*)view SDK_API;
- (void)setFrame:(NSRect)frame display:(BOOL)display animate:(BOOL)animate SDK_API;
- (void)setHasShadow:(BOOL)hasShadow SDK_API;
- (void)setLevel:(NSWindowLevel)level SDK_API;
@end

#endif
