#ifndef QUORVANE_SUPPORT_SPLASH_SPLASH_STATE_H
#define QUORVANE_SUPPORT_SPLASH_SPLASH_STATE_H

#import <Cocoa/Cocoa.h>

#include "support/splash/splash.h"

@class Redrawer;
@class SplashView;

// State shared by the splash's files; others use splash.h. Owned by the main thread, the only one
// to use window and view.

extern NSWindow* win;           // null before init() and after cleanup()
extern SplashView* splashView;  // the window's content view, likewise

extern NSImage* splashImage;              // null until an image is configured
extern NSImage* progressImage;            // the tile of the filled part
extern NSImage* progressIndefiniteImage;  // the tile of the moving stripe
extern NSImage* trackImage;               // the tile of the part not yet filled

extern Redrawer* redrawer;      // null until the bar is first indeterminate
extern NSThread* redrawThread;  // the running redraw thread, or null

// Returns whether a window system is available. The first call checks, and says so in one line on
// standard output if there is none.
[[nodiscard]] bool isSplashPossible();

// Ends the redraw thread after its current sleep, and forgets it. Does nothing when there is none.
void cancelRedrawThread();

// Draws what has changed at once and lets the window respond to the window system.
void drawSplashNow();

#endif
