#ifndef QUORVANE_PLATFORM_GNUSTEP_NS_APPLE_EVENT_DESCRIPTOR_H
#define QUORVANE_PLATFORM_GNUSTEP_NS_APPLE_EVENT_DESCRIPTOR_H

// The toolkit declares NSAppleEventDescriptor as a class without methods. These are the ones that
// launcher/shell/url_events.mm reads an event with, and those that make such an event.
#include_next <Foundation/NSAppleEventDescriptor.h>

#include <stdint.h>

@class NSString;

typedef uint32_t AEEventClass;
typedef uint32_t AEEventID;
typedef uint32_t AEKeyword;
typedef uint32_t DescType;
typedef int16_t AEReturnID;
typedef int32_t AETransactionID;

enum { kAutoGenerateReturnID = -1, kAnyTransactionID = 0 };

@interface NSAppleEventDescriptor (QuorvaneEvents)
// A descriptor that contains a text.
+ (NSAppleEventDescriptor*)descriptorWithString:(NSString*)string;
// An event without parameters. Target and ids are ignored: events stay in this process.
+ (NSAppleEventDescriptor*)appleEventWithEventClass:(AEEventClass)eventClass
                                            eventID:(AEEventID)eventID
                                   targetDescriptor:(NSAppleEventDescriptor*)targetDescriptor
                                           returnID:(AEReturnID)returnID
                                      transactionID:(AETransactionID)transactionID;
// The event's codes; 0 if this is not an event.
- (AEEventClass)eventClass;
- (AEEventID)eventID;
// The event's parameter for `keyword`; nil if it has none or this is not an event.
- (NSAppleEventDescriptor*)paramDescriptorForKeyword:(AEKeyword)keyword;
- (void)setParamDescriptor:(NSAppleEventDescriptor*)descriptor forKeyword:(AEKeyword)keyword;
// The text that this descriptor contains, or nil.
- (NSString*)stringValue;
@end

#endif
