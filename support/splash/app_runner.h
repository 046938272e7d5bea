#ifndef QUORVANE_SUPPORT_SPLASH_APP_RUNNER_H
#define QUORVANE_SUPPORT_SPLASH_APP_RUNNER_H

#import <Foundation/Foundation.h>

// Shows off the splash: the bar hidden, indeterminate, filling from 0 to 100 percent, indeterminate
// again, hidden; then the window goes.
@interface AppRunner : NSObject
// Runs the sequence, about 8 seconds. A body for a second thread beside the main thread's event
// loop: the splash is changed on the main thread, while this one sleeps. `argument` is not used.
- (void)runThread:(id)argument;
@end

#endif
