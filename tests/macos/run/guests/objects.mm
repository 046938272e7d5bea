// Classes of its own: variables, messages to super, categories, constant strings, structures.
#import <AppKit/AppKit.h>

#include <cstdio>
#include <cstring>

@interface Counter : NSObject {
 @public
  int count;
  double weight;
  NSString* name;
}
- (int)add:(int)number;
- (NSString*)name;
@end

@implementation Counter
- (id)init {
  if ((self = [super init])) {
    count = 10;
    weight = 2.5;
    name = @"counter";
  }
  return self;
}

- (int)add:(int)number {
  count += number;
  return count;
}

- (NSString*)name {
  return name;
}

- (void)dealloc {
  printf("dealloc %d\n", count);
  [super dealloc];
}

+ (int)kind {
  return 1;
}
@end

@interface DoubleCounter : Counter {
  int added;
}
@end

@implementation DoubleCounter
- (int)add:(int)number {
  ++added;
  return [super add:2 * number] + added * 1000;
}

+ (int)kind {
  return [super kind] + 1;
}
@end

// A class whose superclass the runner has, of another size than Apple's.
@interface Board : NSView {
  int corners;
}
- (int)corners;
- (size_t)placeOfCorners;
@end

@implementation Board
- (id)initWithFrame:(NSRect)frame {
  if ((self = [super initWithFrame:frame])) {
    corners = 4;
  }
  return self;
}

- (int)corners {
  return corners;
}

- (size_t)placeOfCorners {
  return reinterpret_cast<char*>(&corners) - reinterpret_cast<char*>(self);
}
@end

// What the framework declarations of this project do not have, because the product does not use it.
@interface NSString (NotDeclared)
- (NSUInteger)length;
- (unsigned short)characterAtIndex:(NSUInteger)index;
@end

@interface NSString (Guest)
- (int)vowels;
@end

@implementation NSString (Guest)
- (int)vowels {
  int vowels = 0;
  for (NSUInteger i = 0; i < [self length]; ++i) {
    vowels += strchr("aeiou", [self characterAtIndex:i]) != NULL;
  }
  return vowels;
}
@end

int main() {
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  Counter* counter = [[DoubleCounter alloc] init];
  printf("add %d %d\n", [counter add:1], [counter add:1]);
  printf("variables %d %.1f %s\n", counter->count, counter->weight, [[counter name] UTF8String]);
  printf("kind %d %d\n", [[Counter class] kind], [[DoubleCounter class] kind]);
  [counter release];
  NSString* text = [NSString stringWithFormat:@"%@ and %d", @"strings", 2];
  printf("%s, %lu\n", [text UTF8String], static_cast<unsigned long>([text length]));
  NSString* wide = @"Gr\u00fc\u00dfe \u20ac";
  printf("wide %s, %lu\n", [wide UTF8String], static_cast<unsigned long>([wide length]));
  printf("vowels %d\n", [text vowels]);
  Board* board = [[Board alloc] initWithFrame:NSMakeRect(1, 2, 30, 40)];
  const NSRect bounds = [board bounds];
  printf("board %d %.0f %.0f\n", [board corners], bounds.size.width, bounds.size.height);
  // The declarations give an NSView no variables, and the code was compiled with them.
  printf("behind the superclass %d\n", [board placeOfCorners] > 64);
  [board release];
  Counter* nothing = nil;
  printf("nothing %d %.0f\n", [nothing add:1], [(NSView*)nothing bounds].size.width);
  [pool release];
}
