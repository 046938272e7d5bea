#ifndef FOUNDATION_NSTIMER_H
#define FOUNDATION_NSTIMER_H

#import <Foundation/NSDate.h>

SDK_API @interface NSTimer : NSObject
+ (NSTimer*)scheduledTimerWithTimeInterval:(NSTimeInterval)seconds
                                    target:(id)target
                                  selector:(SEL)selector
                                  userInfo:(id)info
                                   repeats:(BOOL)repeats SDK_API;
@end

#endif
