#ifndef QUORVANE_SUPPORT_SPLASH_APP_RUNNER_H
#define QUORVANE_SUPPORT_SPLASH_APP_RUNNER_H

#import <Foundation/Foundation.h>

// Demonstrates the splash: the bar hidden, indeterminate, filling from 0 to 100 percent,
// indeterminate again, hidden; then the window closes.
@interface AppRunner : NSObject
// Runs the sequence, about 8 seconds. A thread body for use beside the main thread's event loop:
// the splash is changed on the main thread while this thread sleeps. `argument` is not used.
- (void)runThread:(id)argument;
@end

#endif
