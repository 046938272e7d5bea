#ifndef QUORVANE_SUPPORT_SPLASH_SPLASH_VIEW_H
#define QUORVANE_SUPPORT_SPLASH_SPLASH_VIEW_H

#import <Cocoa/Cocoa.h>

// Draws the splash image and, under it, the progress bar in its present state. Every drawing of the
// indeterminate bar moves its stripe on by a point.
@interface SplashView : NSView
@end

#endif
