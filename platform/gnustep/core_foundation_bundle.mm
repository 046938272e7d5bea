#import <CoreFoundation/CoreFoundation.h>
#import <Foundation/Foundation.h>

#include <dlfcn.h>

#import "support/text/cocoa_text.h"

// What a CFBundleRef points to.
@interface QuorvaneBundle : NSObject {
 @public
  NSString* path;
  void* library;
}
@end

@implementation QuorvaneBundle
- (void)dealloc {
  [path release];
  [super dealloc];
}
@end

CFBundleRef CFBundleCreate(CFAllocatorRef, CFURLRef bundleURL) {
  NSString* path = [(NSURL*)bundleURL path];
  BOOL isFolder = NO;
  if (![[NSFileManager defaultManager] fileExistsAtPath:path isDirectory:&isFolder] || !isFolder) {
    return NULL;
  }
  QuorvaneBundle* bundle = [[QuorvaneBundle alloc] init];
  bundle->path = [path copy];
  return (CFBundleRef)bundle;
}

// The executable's path, or nil when the bundle names none. The name stays inside its folder.
static NSString* executableOf(NSString* bundle) {
  NSString* info = [bundle stringByAppendingPathComponent:@"Contents/Info.plist"];
  id name = [[NSDictionary dictionaryWithContentsOfFile:info] objectForKey:@"CFBundleExecutable"];
  if (![name isKindOfClass:[NSString class]] || [name length] == 0 || [name isEqual:@".."] ||
      [name rangeOfString:@"/"].location != NSNotFound) {
    return nil;
  }
  return [[bundle stringByAppendingPathComponent:@"Contents/MacOS"]
      stringByAppendingPathComponent:name];
}

static CFErrorRef newError(NSString* description) {
  NSDictionary* info = [NSDictionary dictionaryWithObject:description
                                                   forKey:NSLocalizedDescriptionKey];
  return (CFErrorRef)[[NSError alloc] initWithDomain:NSCocoaErrorDomain code:0 userInfo:info];
}

Boolean CFBundleLoadExecutableAndReturnError(CFBundleRef bundle, CFErrorRef* error) {
  QuorvaneBundle* loaded = (QuorvaneBundle*)bundle;
  if (loaded->library != NULL) {
    return 1;
  }
  NSString* executable = executableOf(loaded->path);
  if (executable == nil) {
    *error = newError(@"The bundle names no executable.");
    return 0;
  }
  loaded->library = dlopen([executable fileSystemRepresentation], RTLD_LAZY | RTLD_LOCAL);
  if (loaded->library == NULL) {
    *error = newError(textFromUTF8(dlerror()));
    return 0;
  }
  return 1;
}
