#import "support/redrawer.h"

@implementation Redrawer

- (void)runThread:(NSView*)view {
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  NSLog(@"Redrawer running!\n");
  [pool release];
  while (![[NSThread currentThread] isCancelled]) {
    pool = [[NSAutoreleasePool alloc] init];
    [NSThread sleepForTimeInterval:0.03];
    [view setNeedsDisplay:YES];
    [pool release];
  }
}

@end
