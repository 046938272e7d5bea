#ifndef QUORVANE_SUPPORT_SPLASH_REDRAWER_H
#define QUORVANE_SUPPORT_SPLASH_REDRAWER_H

#import <Cocoa/Cocoa.h>

// The target of the thread that keeps the indeterminate progress bar moving.
@interface Redrawer : NSObject
// Lets the main thread mark `view` as needing display every 0.03 s until the current thread is
// cancelled; while the main thread is busy no more than one mark is asked for. The thread's body,
// which holds a reference to `view` for as long as it runs: the main thread keeps another for
// longer, since a view must not be let go of here.
- (void)runThread:(NSView*)view;
@end

#endif
