#import <Foundation/Foundation.h>

// The two kinds of descriptor that exist here. The public class has no instance variables, and its
// methods return the values of an empty descriptor.
@interface QuorvaneTextDescriptor : NSAppleEventDescriptor {
 @public
  NSString* text;
}
@end

@interface QuorvaneEventDescriptor : NSAppleEventDescriptor {
 @public
  AEEventClass eventClass;
  AEEventID eventID;
  NSMutableDictionary* parameters;
}
@end

@implementation NSAppleEventDescriptor (QuorvaneEvents)

+ (NSAppleEventDescriptor*)descriptorWithString:(NSString*)string {
  QuorvaneTextDescriptor* descriptor = [[QuorvaneTextDescriptor alloc] init];
  descriptor->text = [string copy];
  return [descriptor autorelease];
}

+ (NSAppleEventDescriptor*)appleEventWithEventClass:(AEEventClass)eventClass
                                            eventID:(AEEventID)eventID
                                   targetDescriptor:(NSAppleEventDescriptor*)targetDescriptor
                                           returnID:(AEReturnID)returnID
                                      transactionID:(AETransactionID)transactionID {
  (void)targetDescriptor;
  (void)returnID;
  (void)transactionID;
  QuorvaneEventDescriptor* event = [[QuorvaneEventDescriptor alloc] init];
  event->eventClass = eventClass;
  event->eventID = eventID;
  event->parameters = [[NSMutableDictionary alloc] init];
  return [event autorelease];
}

- (AEEventClass)eventClass {
  return 0;
}

- (AEEventID)eventID {
  return 0;
}

- (NSAppleEventDescriptor*)paramDescriptorForKeyword:(AEKeyword)keyword {
  (void)keyword;
  return nil;
}

- (void)setParamDescriptor:(NSAppleEventDescriptor*)descriptor forKeyword:(AEKeyword)keyword {
  (void)descriptor;
  (void)keyword;
}

- (NSString*)stringValue {
  return nil;
}

@end

@implementation QuorvaneTextDescriptor

- (void)dealloc {
  [text release];
  [super dealloc];
}

- (NSString*)stringValue {
  return text;
}

@end

@implementation QuorvaneEventDescriptor

- (void)dealloc {
  [parameters release];
  [super dealloc];
}

- (AEEventClass)eventClass {
  return eventClass;
}

- (AEEventID)eventID {
  return eventID;
}

- (NSAppleEventDescriptor*)paramDescriptorForKeyword:(AEKeyword)keyword {
  return [parameters objectForKey:[NSNumber numberWithUnsignedInt:keyword]];
}

- (void)setParamDescriptor:(NSAppleEventDescriptor*)descriptor forKeyword:(AEKeyword)keyword {
  [parameters setObject:descriptor forKey:[NSNumber numberWithUnsignedInt:keyword]];
}

@end
