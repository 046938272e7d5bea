#ifndef FOUNDATION_NSARRAY_H
#define FOUNDATION_NSARRAY_H

#import <objc/NSObject.h>

#include <sdk_api.h>

@interface NSArray : NSObject
- (NSUInteger)count SDK_API;
- (id)objectAtIndex:(NSUInteger)index SDK_API;
@end

#endif
