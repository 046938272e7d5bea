#ifndef QUORVANE_SUPPORT_SPLASH_REDRAWER_H
#define QUORVANE_SUPPORT_SPLASH_REDRAWER_H

#import <Cocoa/Cocoa.h>

// The target of the thread that keeps the indeterminate progress bar moving.
@interface Redrawer : NSObject
// Has the main thread mark `view` as needing display every 0.03 s until the current thread is
// cancelled; while the main thread is busy at most one request is pending. This is the thread's
// body; it holds a reference to `view` as long as it runs. The main thread keeps another for
// longer, because a view must not be released here.
- (void)runThread:(NSView*)view;
@end

#endif
