#ifndef FOUNDATION_NSAPPLEEVENTS_H
#define FOUNDATION_NSAPPLEEVENTS_H

#import <objc/NSObject.h>

#include <MacTypes.h>

#include <sdk_api.h>

typedef FourCharCode AEEventClass;
typedef FourCharCode AEEventID;
typedef FourCharCode AEKeyword;

@class NSString;

SDK_API @interface NSAppleEventDescriptor : NSObject
- (NSAppleEventDescriptor*)paramDescriptorForKeyword:(AEKeyword)keyword SDK_API;
- (NSString*)stringValue SDK_API;
@end

SDK_API @interface NSAppleEventManager : NSObject
+ (NSAppleEventManager*)sharedAppleEventManager SDK_API;
- (void)setEventHandler:(id)handler
            andSelector:(SEL)selector
          forEventClass:(AEEventClass)eventClass
             andEventID:(AEEventID)eventID SDK_API;
@end

#endif
