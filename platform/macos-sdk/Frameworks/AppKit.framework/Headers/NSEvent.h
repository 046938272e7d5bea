#ifndef APPKIT_NSEVENT_H
#define APPKIT_NSEVENT_H

#import <Foundation/Foundation.h>

@class NSGraphicsContext;

typedef enum NSEventType : NSUInteger {
  NSApplicationDefined SDK_API = 15,
} NSEventType;

typedef NSUInteger NSEventModifierFlags;

SDK_API @interface NSEvent : NSObject
+ (NSEvent*)otherEventWithType:(NSEventType)type
                      location:(NSPoint)location
                 modifierFlags:(NSEventModifierFlags)flags
                     timestamp:(NSTimeInterval)time
                  windowNumber:(NSInteger)window
                       context:(NSGraphicsContext*)context
                       subtype:(short)subtype
                         data1:(NSInteger)data1
                         data2:(NSInteger)data2 SDK_API;
@end

#endif
