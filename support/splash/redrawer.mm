#import "support/splash/redrawer.h"

// The redraw thread's request to the main thread. At most one is pending, however long the main
// thread is busy.
@interface RedrawRequest : NSObject {
  NSView* view;
  BOOL isWaiting;
}
- (id)initWithView:(NSView*)shownView;
- (void)send;
- (void)redraw;
@end

@implementation RedrawRequest

- (id)initWithView:(NSView*)shownView {
  self = [super init];
  if (self != nil) {
    view = [shownView retain];
  }
  return self;
}

- (void)send {
  if (!__atomic_exchange_n(&isWaiting, YES, __ATOMIC_ACQ_REL)) {
    // In the run loop's common modes: while a menu is open, too.
    [self performSelectorOnMainThread:@selector(redraw) withObject:nil waitUntilDone:NO];
  }
}

- (void)redraw {
  __atomic_store_n(&isWaiting, NO, __ATOMIC_RELEASE);
  [view setNeedsDisplay:YES];
}

- (void)dealloc {
  [view release];
  [super dealloc];
}

@end

@implementation Redrawer

- (void)runThread:(NSView*)view {
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  NSLog(@"Redrawer running!\n");
  RedrawRequest* request = [[RedrawRequest alloc] initWithView:view];
  [pool release];
  while (![[NSThread currentThread] isCancelled]) {
    pool = [[NSAutoreleasePool alloc] init];
    [NSThread sleepForTimeInterval:0.03];
    [request send];
    [pool release];
  }
  [request release];
}

@end
