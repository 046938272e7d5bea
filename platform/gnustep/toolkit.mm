#include "platform/toolkit.h"

#import <Foundation/Foundation.h>

#include "platform/environment.h"
#include "platform/gnustep/main_bundle.h"
#include "platform/gnustep/text_guard.h"

void prepareToolkit(char** argv) {
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  // The toolkit would open words for files and take "-Name value" for settings of its own.
  [NSProcessInfo initializeWithArguments:allocReadableWords(argv)
                                   count:1
                             environment:allocReadableWords(getEnvP())];
  readMainBundleFromContents();
  [pool release];
}
