#include "platform/gnustep/quiet_start.h"

#include <signal.h>

#include <cstdlib>

#import <Foundation/Foundation.h>

// ImageMagick, which the toolkit's images bring along, lists and opens its coder modules when the
// application is created. None is needed: the toolkit reads PNG, JPEG, GIF and TIFF by itself.
static const char kCoderModules[] = "MAGICK_CODER_MODULE_PATH";

static bool coderModulesAreOurs = false;

// The toolkit takes these signals for itself and only asks a running event loop to end. Here they
// end the process, as on macOS, until the JVM takes them.
static const int kEndSignals[] = {SIGINT, SIGTERM};

static struct sigaction endActions[2];

// Costly questions to the window manager are not asked, and no application icon is put on the
// screen. Whoever sets these defaults for themselves keeps their choice.
static void registerDefaults() {
  NSDictionary* defaults =
      [NSDictionary dictionaryWithObjectsAndKeys:@"NO", @"GSX11HandlesWindowDecorations", @"YES",
                                                 @"GSSuppressAppIcon", nil];
  [[NSUserDefaults standardUserDefaults] registerDefaults:defaults];
}

void beginQuietStart() {
  registerDefaults();
  coderModulesAreOurs = getenv(kCoderModules) == NULL;
  if (coderModulesAreOurs) {
    setenv(kCoderModules, "/nonexistent", 1);
  }
  for (int i = 0; i < 2; ++i) {
    sigaction(kEndSignals[i], NULL, &endActions[i]);
  }
}

void endQuietStart() {
  for (int i = 0; i < 2; ++i) {
    sigaction(kEndSignals[i], &endActions[i], NULL);
  }
  if (coderModulesAreOurs) {
    unsetenv(kCoderModules);  // child processes get the environment as it was
  }
}
