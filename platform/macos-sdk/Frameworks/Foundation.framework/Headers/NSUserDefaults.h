#ifndef FOUNDATION_NSUSERDEFAULTS_H
#define FOUNDATION_NSUSERDEFAULTS_H

#import <objc/NSObject.h>

#include <sdk_api.h>

@class NSDictionary;

SDK_API @interface NSUserDefaults : NSObject
+ (NSUserDefaults*)standardUserDefaults SDK_API;
- (void)registerDefaults:(NSDictionary*)defaults SDK_API;
@end

#endif
