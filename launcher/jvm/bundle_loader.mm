#include "launcher/jvm/bundle_loader.h"

#include <cstdio>

#import <CoreFoundation/CoreFoundation.h>
#import <Foundation/Foundation.h>

#include "support/log/logging.h"
#import "support/text/cocoa_text.h"

// Returns a bundle that stays for the life of the process, or null.
static CFBundleRef createBundle(const char* path) {
  logMessage("[BundleLoader] Creating jre path URL for path %s\n", path);
  NSURL* url = [NSURL fileURLWithPath:textFromUTF8(path) isDirectory:YES];
  logMessage("[BundleLoader] Created NSURL\n");
  NSLog(@"[BundleLoader] URL is %@\n", url);
  return url == nil ? NULL : CFBundleCreate(kCFAllocatorDefault, (CFURLRef)url);
}

static void loadExecutable(CFBundleRef bundle) {
  CFErrorRef error = NULL;
  if (CFBundleLoadExecutableAndReturnError(bundle, &error) && error == NULL) {
    logMessage("[BundleLoader] Bundle Loaded OK\n");
  } else {
    logMessage("[BundleLoader] Could not load JRE bundle!");
  }
  [(NSError*)error release];
}

void loadOSXBundle(const char* path) {
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  CFBundleRef bundle = createBundle(path);
  if (bundle == NULL) {
    logMessage("[BundleLoader] Bundle is null?");
  } else {
    logMessage("[BundleLoader] Created Bundle\n");
    loadExecutable(bundle);
  }
  fflush(stderr);
  fflush(stdout);
  [pool release];
}
