#include "platform/toolkit.h"

#include <cstdio>
#include <cstdlib>

#import <AppKit/AppKit.h>

#include "platform/environment.h"
#include "platform/gnustep/main_bundle.h"
#include "platform/gnustep/open_url_forwarder.h"
#include "platform/process_end.h"

// ImageMagick, which the toolkit's images bring along, lists and opens its coder modules when the
// application is created. None is needed: the toolkit reads PNG, JPEG, GIF and TIFF by itself.
static const char kCoderModules[] = "MAGICK_CODER_MODULE_PATH";

static bool coderModulesAreOurs = false;

// Costly questions to the window manager are not asked, and no application icon is put on the
// screen. Whoever sets these defaults for themselves keeps their choice.
static void registerDefaults() {
  NSDictionary* defaults =
      [NSDictionary dictionaryWithObjectsAndKeys:@"NO", @"GSX11HandlesWindowDecorations", @"YES",
                                                 @"GSSuppressAppIcon", nil];
  [[NSUserDefaults standardUserDefaults] registerDefaults:defaults];
}

// A display that exists but refuses the connection ends in this exception.
static void endOnMissingDisplay(NSException* exception) {
  fprintf(stderr, "%s: %s\n", [[exception name] UTF8String], [[exception reason] UTF8String]);
  endProcess(1);
}

void prepareToolkit(char** argv) {
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  // The toolkit would open words for files and take "-Name value" for settings of its own.
  [NSProcessInfo initializeWithArguments:argv count:1 environment:getEnvP()];
  readMainBundleFromContents();
  [pool release];
}

void beforeApplicationCreation() {
  registerDefaults();
  coderModulesAreOurs = getenv(kCoderModules) == NULL;
  if (coderModulesAreOurs) {
    setenv(kCoderModules, "/nonexistent", 1);
  }
  NSSetUncaughtExceptionHandler(endOnMissingDisplay);
}

void afterApplicationCreation() {
  NSSetUncaughtExceptionHandler(NULL);
  if (coderModulesAreOurs) {
    unsetenv(kCoderModules);  // child processes get the environment as it was
  }
  [NSApp setDelegate:[[OpenURLForwarder alloc] init]];
}
