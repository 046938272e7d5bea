#include "platform/toolkit.h"

#import <Foundation/Foundation.h>

#include "platform/environment.h"
#include "platform/gnustep/main_bundle.h"
#include "platform/gnustep/text_guard.h"

void prepareToolkit(char** argv) {
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  // The toolkit would take arguments for files to open, and "-Name value" for its own settings.
  [NSProcessInfo initializeWithArguments:allocReadableWords(argv)
                                   count:1
                             environment:allocReadableWords(getEnvP())];
  readMainBundleFromContents();
  [pool release];
}
