#include "platform/gnustep/quiet_start.h"

#include <signal.h>

#include <cstdlib>

#import <Foundation/Foundation.h>

// Settings that the toolkit's libraries read while the application object is created, to skip work
// that nobody needs.
static const char* const kTemporaryEnvironment[][2] = {
    // ImageMagick would list and open its coder modules. The toolkit reads PNG, JPEG, GIF and TIFF
    // by itself.
    {"MAGICK_CODER_MODULE_PATH", "/nonexistent"},
    // Xlib would parse half a megabyte of compose sequences for text fields that do not exist. The
    // JVM's window toolkit reads its own, after the variable is removed again.
    {"XCOMPOSEFILE", "/dev/null"},
};

static const int kPassingCount = 2;

static bool passingIsOurs[kPassingCount] = {};

// The toolkit takes these signals for itself and only asks a running event loop to end. Here they
// end the process, as on macOS, until the JVM takes them.
static const int kEndSignals[] = {SIGINT, SIGTERM};

static struct sigaction endActions[2];

// A user's own setting of these defaults is kept.
static void registerDefaults() {
  NSDictionary* defaults = [NSDictionary
      dictionaryWithObjectsAndKeys:
          // Skips expensive queries to the window manager.
          @"NO", @"GSX11HandlesWindowDecorations",
          // No application icon is put on the screen.
          @"YES", @"GSSuppressAppIcon",
          // The notification server of a fresh account sometimes refuses its first client. That is
          // logged and does not become an exception out of activateIgnoringOtherApps:.
          @"YES", @"GSLogWorkspaceTimeout", nil];
  [[NSUserDefaults standardUserDefaults] registerDefaults:defaults];
}

void beginQuietStart() {
  registerDefaults();
  for (int i = 0; i < kPassingCount; ++i) {
    const char* const* variable = kTemporaryEnvironment[i];
    passingIsOurs[i] = getenv(variable[0]) == NULL && setenv(variable[0], variable[1], 1) == 0;
  }
  for (int i = 0; i < 2; ++i) {
    sigaction(kEndSignals[i], NULL, &endActions[i]);
  }
}

void endQuietStart() {
  for (int i = 0; i < 2; ++i) {
    sigaction(kEndSignals[i], &endActions[i], NULL);
  }
  for (int i = 0; i < kPassingCount; ++i) {
    if (passingIsOurs[i]) {
      unsetenv(kTemporaryEnvironment[i][0]);  // child processes get the environment as it was
    }
  }
}
