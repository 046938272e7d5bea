#include "launcher/shell/event_loop.h"

#include <unistd.h>

#include <atomic>

#import <AppKit/AppKit.h>

#include "support/events/window_events.h"

static std::atomic<bool> hasLeftLoop{false};

// Ends the main thread's loop. It does all its work on the main thread.
@interface EventLoopEnd : NSObject {
  BOOL isWanted;
}
- (BOOL)isWanted;
// Clears the request to end.
- (void)reset;
// Records the request to end, and stops the innermost loop. Java's window toolkit may run one
// inside ours, and a stop before a loop has begun is lost: it asks again until the loop has been
// left.
- (void)end;
// Does nothing: the action of a timer that keeps a plain run loop from having nothing to wait for.
- (void)idle:(NSTimer*)timer;
@end

// An application's loop checks only after an event whether it was stopped.
static void stopApplication() {
  [NSApp stop:nil];
  postEmptyEvent(true);
}

@implementation EventLoopEnd

- (BOOL)isWanted {
  return isWanted;
}

- (void)reset {
  isWanted = NO;
  [NSObject cancelPreviousPerformRequestsWithTarget:self];
}

- (void)end {
  isWanted = YES;
  if (NSApp != nil) {
    stopApplication();
  }
  [self performSelector:@selector(end) withObject:nil afterDelay:0.1];
}

- (void)idle:(NSTimer*)timer {
  (void)timer;
}

@end

static EventLoopEnd* loopEnd() {
  static EventLoopEnd* const end = [[EventLoopEnd alloc] init];
  return end;
}

// Keeps a plain run loop from having nothing to wait for.
static NSTimer* keptTimer = nil;

void prepareEventLoop() {
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  if (keptTimer == nil) {
    const NSTimeInterval kOneDay = 24 * 60 * 60;
    keptTimer = [[NSTimer scheduledTimerWithTimeInterval:kOneDay
                                                  target:loopEnd()
                                                selector:@selector(idle:)
                                                userInfo:nil
                                                 repeats:YES] retain];
    [loopEnd() performSelectorOnMainThread:@selector(reset) withObject:nil waitUntilDone:NO];
    [[NSRunLoop currentRunLoop] runMode:NSDefaultRunLoopMode beforeDate:[NSDate distantPast]];
  }
  [pool release];
}

// Returns after some events, or when the application was stopped.
static void serveMainThread() {
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  if (NSApp != nil) {
    [NSApp run];
  } else {
    [[NSRunLoop currentRunLoop] runMode:NSDefaultRunLoopMode beforeDate:[NSDate distantFuture]];
  }
  [pool release];
}

void runEventLoopUntilEnded() {
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  while (![loopEnd() isWanted]) {
    serveMainThread();
  }
  [loopEnd() reset];
  [pool release];
  hasLeftLoop = true;
}

void endEventLoop() {
  hasLeftLoop = false;
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  [loopEnd() performSelectorOnMainThread:@selector(end) withObject:nil waitUntilDone:NO];
  [pool release];
}

bool waitForEventLoopToEnd() {
  constexpr int kFiveSeconds = 500;
  constexpr useconds_t kPauseMicroseconds = 10000;
  for (int i = 0; i < kFiveSeconds && !hasLeftLoop; ++i) {
    usleep(kPauseMicroseconds);
  }
  return hasLeftLoop;
}
