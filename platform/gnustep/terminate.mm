#import <AppKit/AppKit.h>

#include "platform/process_end.h"

// The toolkit only records that it must end, and does so at the next turn of its event loop: never,
// if that loop does not run, as during an installation. As on macOS the process ends at once here,
// with status 0, but without the toolkit's tear-down, which does not expect the JVM's threads.

@implementation NSApplication (QuorvaneTerminate)

- (void)replyToApplicationShouldTerminate:(BOOL)shouldTerminate {
  if (shouldTerminate) {
    [[NSNotificationCenter defaultCenter]
        postNotificationName:NSApplicationWillTerminateNotification
                      object:self];
    endProcess(0);
  }
}

@end
