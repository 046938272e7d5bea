#ifndef QUORVANE_SUPPORT_REDRAWER_H
#define QUORVANE_SUPPORT_REDRAWER_H

#import <Cocoa/Cocoa.h>

// The target of the thread that keeps the indeterminate progress bar moving.
@interface Redrawer : NSObject
// Marks `view` as needing display every 0.03 s until the current thread is cancelled. The thread's
// body; it draws nothing itself.
- (void)runThread:(NSView*)view;
@end

#endif
