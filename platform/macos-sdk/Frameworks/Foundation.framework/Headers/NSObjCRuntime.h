#ifndef FOUNDATION_NSOBJCRUNTIME_H
#define FOUNDATION_NSOBJCRUNTIME_H

#import <objc/NSObject.h>

#include <sdk_api.h>

@class NSString;

SDK_EXTERN Class NSClassFromString(NSString* name) SDK_API;

#endif
