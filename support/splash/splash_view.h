#ifndef QUORVANE_SUPPORT_SPLASH_SPLASH_VIEW_H
#define QUORVANE_SUPPORT_SPLASH_SPLASH_VIEW_H

#import <Cocoa/Cocoa.h>

// Draws the splash image and, under it, the progress bar in its current state. Each drawing of the
// indeterminate bar moves its stripe by a point.
@interface SplashView : NSView
@end

#endif
