#import "support/splash/app_runner.h"

#include "support/splash/splash.h"

@interface AppRunner (Steps)
- (void)showPercent:(NSNumber*)percent;
- (void)hideWindow;
- (void)setPercent:(int)percent thenSleep:(NSTimeInterval)seconds;
@end

@implementation AppRunner

- (void)runThread:(id)argument {
  (void)argument;
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  NSLog(@"AppRunner running!\n");
  [self setPercent:-100 thenSleep:1];
  [self setPercent:-1 thenSleep:1];
  for (int percent = 0; percent <= 100; ++percent) {
    [self setPercent:percent thenSleep:0.03];
  }
  [self setPercent:-1 thenSleep:1];
  [self setPercent:-100 thenSleep:1];
  [self performSelectorOnMainThread:@selector(hideWindow) withObject:nil waitUntilDone:YES];
  [NSThread sleepForTimeInterval:1];
  [pool release];
}

- (void)showPercent:(NSNumber*)percent {
  setProgress([percent intValue]);
}

- (void)hideWindow {
  hideSplash();
}

- (void)setPercent:(int)percent thenSleep:(NSTimeInterval)seconds {
  [self performSelectorOnMainThread:@selector(showPercent:)
                         withObject:[NSNumber numberWithInt:percent]
                      waitUntilDone:YES];
  [NSThread sleepForTimeInterval:seconds];
}

@end
